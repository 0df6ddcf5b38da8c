// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

#include <mutex>
#include <utility>

namespace bildkurier {

/// A way to the main queue for threads that may outlive it. Any thread.
class Mailbox {
public:
    explicit Mailbox(MainQueue& main) : main_(&main) {}

    /// Drops the task once the mailbox is closed.
    void post(Task task) {
        const std::lock_guard lock(mutex_);
        if (main_ != nullptr) main_->post(std::move(task));
    }

    /// From now on the main queue may be gone.
    void close() {
        const std::lock_guard lock(mutex_);
        main_ = nullptr;
    }

private:
    std::mutex mutex_;
    MainQueue* main_;
};

}  // namespace bildkurier
