// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace bildkurier {

/// The main queue of a program without a window. `run` makes its thread the main thread.
class EventLoop final : public MainQueue {
public:
    EventLoop();
    ~EventLoop() override;

    /// Runs tasks and timers until `stop`, those posted before it included. What is left
    /// then is dropped.
    void run();

    /// Any thread.
    void stop();

    void post(Task task) override;
    Handle after(Duration delay, Task task) override;
    Handle every(Duration interval, Task task) override;
    Instant now() const override;
    Date date() const override;

private:
    struct Timer;
    using Timers = std::multimap<Instant, std::weak_ptr<Timer>>;

    Handle schedule(Duration delay, Duration interval, Task task);
    /// The next task that is due; waits for it. Empty after `stop`.
    Task next();
    Task nextTimer(Instant now);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool stopped_ = false;
    Timers timers_;  ///< main thread only
};

}  // namespace bildkurier
