// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "EventLoop.h"

namespace bildkurier {

/// The main queue of a program, with a look at the clock before and after every task.
class TimedQueue final : public MainQueue {
public:
    void run() { loop_.run(); }
    void stop() { loop_.stop(); }

    /// When the task that runs now, or ran last, began.
    Instant taskBegan() const { return taskBegan_; }
    /// The longest time that a task took since `forget`.
    Duration longestTask() const { return longestTask_; }
    void forget() { longestTask_ = Duration::zero(); }

    void post(Task task) override { loop_.post(timed(std::move(task))); }
    Handle after(Duration delay, Task task) override {
        return loop_.after(delay, timed(std::move(task)));
    }
    Handle every(Duration interval, Task task) override {
        return loop_.every(interval, timed(std::move(task)));
    }
    Instant now() const override { return loop_.now(); }
    Date date() const override { return loop_.date(); }

private:
    Task timed(Task task);

    EventLoop loop_;
    Instant taskBegan_;
    Duration longestTask_{};
};

}  // namespace bildkurier
