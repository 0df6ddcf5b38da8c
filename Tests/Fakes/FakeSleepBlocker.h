// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "IdleSleepBlocker.h"

#include <optional>
#include <string>

namespace bildkurier {

/// Remembers why the machine must not sleep.
class FakeSleepBlocker final : public IdleSleepBlocker {
public:
    std::optional<std::string> reason;  ///< present while sleep is blocked
    int begun = 0;                      ///< times that sleep came to be blocked

    void begin(const std::string& why) override {
        if (reason) return;
        reason = why;
        ++begun;
    }
    void end() override { reason.reset(); }
};

}  // namespace bildkurier
