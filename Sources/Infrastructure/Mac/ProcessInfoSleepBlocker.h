// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "IdleSleepBlocker.h"

namespace bildkurier {

/// Tells the system that this process does what its user has asked for. The end of the process
/// ends it too.
class ProcessInfoSleepBlocker final : public IdleSleepBlocker {
public:
    void begin(const std::string& reason) override;
    void end() override;

private:
    Handle activity_;
};

}  // namespace bildkurier
