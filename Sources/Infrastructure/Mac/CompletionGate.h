// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>
#include <mutex>

namespace bildkurier {

/// Through which the system's completions come, on whatever thread, until the program ends. Any
/// thread.
class CompletionGate {
public:
    /// Runs `completion` unless the gate is closed.
    void pass(const std::function<void()>& completion) {
        const std::lock_guard lock(mutex_);
        if (isOpen_) completion();
    }

    /// From now on nothing is there any more that a completion could reach.
    void close() {
        const std::lock_guard lock(mutex_);
        isOpen_ = false;
    }

private:
    std::mutex mutex_;
    bool isOpen_ = true;
};

}  // namespace bildkurier
