// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "IdleSleepBlocker.h"

namespace bildkurier {

/// Keeps the machine awake by an activity of the process, whose end ends it too.
class ProcessInfoSleepBlocker final : public IdleSleepBlocker {
public:
    void begin(const std::string& reason) override;
    void end() override { activity_.reset(); }

private:
    Handle activity_;  ///< null while sleep is allowed
};

}  // namespace bildkurier
