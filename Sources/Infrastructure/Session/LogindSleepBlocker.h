// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "IdleSleepBlocker.h"

namespace bildkurier {

/// Asks systemd-logind over the system bus to keep the machine awake. Without bus or logind
/// nothing happens; without an answer `begin` returns after a second. The end of the process
/// ends it too.
class LogindSleepBlocker final : public IdleSleepBlocker {
public:
    void begin(const std::string& reason) override;
    void end() override;

private:
    FileDescriptor inhibitor_;  ///< logind keeps the machine awake while it is open
};

}  // namespace bildkurier
