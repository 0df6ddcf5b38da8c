// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramCall.h"
#include "ProgramResult.h"

#include <sys/types.h>

#include <array>
#include <chrono>
#include <string>

namespace bildkurier {

/// A child that can be listened to and sent signals while it runs. It dies with this object at
/// the latest; nothing here waits beyond the deadline of the call. One thread at a time.
class RunningProgram {
public:
    /// Throws where the program cannot be started.
    explicit RunningProgram(const ProgramCall& call);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    /// Waits until its standard output contains `text`; false if it never does.
    bool waitUntilItSays(const std::string& text);
    /// Waits until a signal has stopped it; false if it ends instead.
    bool waitUntilStopped();
    void send(int signal) const;
    /// Until its end has been waited for.
    pid_t process() const { return process_; }
    bool hasEnded() const;
    /// Waits until it has ended, which the deadline sees to. Once.
    ProgramResult finish();

    /// What it has said so far, as far as that has been waited for.
    const std::string& out() const { return result_.out; }

private:
    using Clock = std::chrono::steady_clock;

    /// Takes what the program says next; false when it can say no more, or has no time left.
    bool listen();
    bool isSilent() const;

    pid_t process_ = -1;  ///< none: its end has been waited for
    Clock::time_point deadline_;
    ProgramResult result_;
    std::array<int, 2> outputs_{-1, -1};  ///< standard output and error; none: closed
};

}  // namespace bildkurier
