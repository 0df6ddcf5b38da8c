// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "MainQueue.h"

#include <csignal>
#include <functional>
#include <thread>

namespace bildkurier {

/// Turns the signals by which a program is asked to end (SIGINT, SIGTERM, SIGHUP) into calls
/// on the main queue, for as long as it lives; afterwards they end the program again. Make it
/// before any other thread: threads inherit that these signals are not for them. Signals that
/// were to be ignored when the program started stay ignored.
class InterruptSignals {
public:
    InterruptSignals(MainQueue& main, std::function<void()> interrupted);
    InterruptSignals(const InterruptSignals&) = delete;
    InterruptSignals& operator=(const InterruptSignals&) = delete;
    ~InterruptSignals();

private:
    void wait() const;

    MainQueue& main_;
    std::function<void()> interrupted_;
    sigset_t previous_{};
    FileDescriptor signals_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace bildkurier
