// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace bildkurier {

/// A main queue that knows which repeating timers exist.
class TimerCensus final : public MainQueue {
public:
    explicit TimerCensus(MainQueue& queue) : queue_(queue) {}

    /// How many timers of this interval are held.
    std::ptrdiff_t repeating(Duration interval) const {
        return std::ranges::count_if(timers_, [interval](const auto& timer) {
            return timer.first == interval && !timer.second.expired();
        });
    }

    void post(Task task) override { queue_.post(std::move(task)); }
    Handle after(Duration delay, Task task) override {
        return queue_.after(delay, std::move(task));
    }
    Handle every(Duration interval, Task task) override {
        std::erase_if(timers_, [](const auto& timer) { return timer.second.expired(); });
        Handle handle = queue_.every(interval, std::move(task));
        timers_.emplace_back(interval, handle);
        return handle;
    }
    Instant now() const override { return queue_.now(); }
    Date date() const override { return queue_.date(); }

private:
    MainQueue& queue_;
    std::vector<std::pair<Duration, std::weak_ptr<void>>> timers_;
};

}  // namespace bildkurier
