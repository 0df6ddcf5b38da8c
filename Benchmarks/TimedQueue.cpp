// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TimedQueue.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

Task TimedQueue::timed(Task task) {
    return [this, task = std::move(task)]() mutable {
        taskBegan_ = now();
        task();
        // What the task held goes with it, as it would without this queue.
        task = {};
        longestTask_ = std::max(longestTask_, now() - taskBegan_);
    };
}

}  // namespace bildkurier
