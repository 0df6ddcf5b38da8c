// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ManualRunLoop.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

void ManualRunLoop::post(Task task) { main_.push_back(std::move(task)); }

Handle ManualRunLoop::after(Duration delay, Task task) {
    return schedule(delay, Duration::zero(), std::move(task));
}

Handle ManualRunLoop::every(Duration interval, Task task) {
    return schedule(interval, interval, std::move(task));
}

void ManualRunLoop::run(Task task) { background_.push_back(std::move(task)); }

bool ManualRunLoop::stepMain() {
    if (main_.empty()) return false;
    const Task task = std::move(main_.front());
    main_.pop_front();
    task();
    return true;
}

bool ManualRunLoop::stepBackground() {
    if (background_.empty()) return false;
    const Task task = std::move(background_.front());
    background_.pop_front();
    task();
    return true;
}

void ManualRunLoop::settle() {
    while (stepMain() || stepBackground()) {
    }
}

void ManualRunLoop::advance(Duration duration) {
    const Instant end = clock + duration;
    settle();
    while (!timers_.empty() && timers_.begin()->first <= end) {
        const auto [due, weak] = *timers_.begin();
        timers_.erase(timers_.begin());
        const auto timer = weak.lock();
        if (!timer) continue;
        moveClocks(due);
        if (timer->interval > Duration::zero()) timers_.emplace(due + timer->interval, timer);
        const Task task = timer->task;
        task();
        settle();
    }
    moveClocks(end);
}

void ManualRunLoop::moveClocks(Instant to) {
    if (to <= clock) return;
    wallClock += std::chrono::round<std::chrono::milliseconds>(to - clock);
    clock = to;
}

std::size_t ManualRunLoop::timers() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(timers_, [](const auto& entry) { return !entry.second.expired(); }));
}

Handle ManualRunLoop::schedule(Duration delay, Duration interval, Task task) {
    auto timer = std::make_shared<Timer>(interval, std::move(task));
    timers_.emplace(clock + delay, timer);
    return timer;
}

}  // namespace bildkurier
