// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace bildkurier {

/// The main queue of a program without a window. The thread that calls `run` is the main
/// thread. What is still posted when the loop is destroyed is dropped.
class EventLoop final : public MainQueue {
public:
    /// Runs tasks and timers until `stop`.
    void run();

    /// Ends `run` after the tasks posted so far. Any thread.
    void stop();

    void post(Task task) override;
    Handle after(Duration delay, Task task) override;
    Handle every(Duration interval, Task task) override;
    Instant now() const override;
    Date date() const override;

private:
    struct Timer {
        Duration interval{};  ///< zero: once
        Task task;
    };

    Handle schedule(Duration delay, Duration interval, Task task);
    /// Waits for the next task or timer that is due.
    Task next();
    /// The task of a timer that is due and still held; empty when there is none.
    Task dueTimer();

    std::mutex mutex_;  ///< guards `tasks_`
    std::condition_variable posted_;
    std::deque<Task> tasks_;
    std::atomic<std::size_t> taskCount_ = 0;  ///< of `tasks_`, for a look without the lock
    std::multimap<Instant, std::weak_ptr<Timer>> timers_;
    bool timersTurn_ = true;
    bool stopped_ = false;
};

}  // namespace bildkurier
