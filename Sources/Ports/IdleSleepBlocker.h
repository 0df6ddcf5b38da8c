// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// Keeps the machine from idle sleep. Both calls may be repeated without effect. Main thread.
class IdleSleepBlocker {
public:
    virtual ~IdleSleepBlocker() = default;

    /// From now on until `end`. The system's power tools show the reason.
    virtual void begin(const std::string& reason) = 0;
    virtual void end() = 0;
};

}  // namespace bildkurier
