// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"

#include "ComesSoon.h"

#include <utility>

namespace bildkurier {

void EventLoop::run() {
    stopped_ = false;
    while (!stopped_) next()();
}

void EventLoop::stop() {
    post([this] { stopped_ = true; });
}

void EventLoop::post(Task task) {
    // Notified under the lock: whoever waits for this task may destroy the loop right after.
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    taskCount_ = tasks_.size();
    posted_.notify_one();
}

Handle EventLoop::after(Duration delay, Task task) {
    return schedule(delay, Duration::zero(), std::move(task));
}

Handle EventLoop::every(Duration interval, Task task) {
    return schedule(interval, interval, std::move(task));
}

Instant EventLoop::now() const { return std::chrono::steady_clock::now(); }

Date EventLoop::date() const {
    return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
}

Handle EventLoop::schedule(Duration delay, Duration interval, Task task) {
    auto timer = std::make_shared<Timer>(interval, std::move(task));
    timers_.emplace(now() + delay, timer);
    return timer;
}

Task EventLoop::next() {
    for (;;) {
        // In turn, so that timers whose tasks take long leave room for what is posted.
        if (std::exchange(timersTurn_, !timersTurn_)) {
            if (Task task = dueTimer()) return task;
        }
        std::unique_lock lock(mutex_);
        if (!tasks_.empty()) {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            taskCount_ = tasks_.size();
            return task;
        }
        if (timersTurn_) continue;
        lock.unlock();
        if (comesSoon([this] { return taskCount_ > 0; })) continue;
        lock.lock();
        if (!tasks_.empty()) continue;
        if (timers_.empty()) {
            posted_.wait(lock);
        } else {
            posted_.wait_until(lock, timers_.begin()->first);
        }
    }
}

Task EventLoop::dueTimer() {
    while (!timers_.empty() && timers_.begin()->first <= now()) {
        const auto timer = timers_.begin()->second.lock();
        const Instant due = timers_.begin()->first;
        timers_.erase(timers_.begin());
        if (!timer) continue;
        // A timer that fell behind skips the beats it missed.
        if (timer->interval > Duration::zero()) {
            timers_.emplace(std::max(due, now()) + timer->interval, timer);
        }
        return timer->task;
    }
    return {};
}

}  // namespace bildkurier
