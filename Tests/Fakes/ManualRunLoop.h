// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "MainQueue.h"

#include <cstddef>
#include <deque>
#include <map>
#include <memory>

namespace bildkurier {

/// Main queue, background and clock in one thread, all moved by hand.
class ManualRunLoop final : public MainQueue, public Background {
public:
    Instant clock;  ///< moved by `advance`
    /// Moves along with `clock`.
    Date wallClock = Date(std::chrono::milliseconds(1'715'256'000'000));  ///< 9 May 2024, noon UTC

    void post(Task task) override;
    Handle after(Duration delay, Task task) override;
    Handle every(Duration interval, Task task) override;
    Instant now() const override { return clock; }
    Date date() const override { return wallClock; }
    void run(Task task) override;

    /// Runs the main queue's next task; false when there is none.
    bool stepMain();
    /// Runs the next background task; false when there is none.
    bool stepBackground();
    /// Runs everything posted, main queue before background, until nothing is left.
    void settle();
    /// Lets time pass: settles, and runs each timer when it is due, settling after each.
    void advance(Duration duration);

    std::size_t mainTasks() const { return main_.size(); }
    std::size_t backgroundTasks() const { return background_.size(); }
    /// Timers whose handle is still held.
    std::size_t timers() const;

private:
    struct Timer {
        Duration interval{};  ///< zero: once
        Task task;
    };

    Handle schedule(Duration delay, Duration interval, Task task);
    void moveClocks(Instant to);

    std::deque<Task> main_;
    std::deque<Task> background_;
    std::multimap<Instant, std::weak_ptr<Timer>> timers_;
};

}  // namespace bildkurier
