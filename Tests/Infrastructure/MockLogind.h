// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ChildProcess.h"
#include "LinePipe.h"

#include <cstdint>
#include <string>

namespace bildkurier {

/// systemd-logind on the system's bus, as far as it inhibits: a process of its own that reports
/// what it is asked for, and when what it gave is closed.
class MockLogind {
public:
    enum class Manner : std::uint8_t {
        grants,
        deniesSleep,  ///< grants what does not ask for it
        isSilent,     ///< never answers
    };

    explicit MockLogind(Manner manner = Manner::grants);

    /// "WHAT|WHO|WHY|MODE" of a request, or "released"; waits for it.
    std::string nextEvent() const { return events_.read(); }

private:
    LinePipe events_;
    ChildProcess process_;
};

}  // namespace bildkurier
