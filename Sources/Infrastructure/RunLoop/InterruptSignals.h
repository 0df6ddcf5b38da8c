// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "MainQueue.h"

#include <csignal>
#include <functional>
#include <map>
#include <thread>

namespace bildkurier {

/// Turns the signals by which a program is asked to end (SIGINT, SIGTERM, SIGHUP) into calls
/// on the main queue, for as long as it lives; afterwards they end the program again. Signals that
/// were to be ignored when the program started stay ignored, and programs that are started
/// meanwhile are ended by them as ever. One at a time.
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
    std::map<int, struct sigaction> previous_;  ///< by signal
    FileDescriptor arrived_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace bildkurier
