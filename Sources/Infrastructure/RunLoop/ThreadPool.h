// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace bildkurier {

/// Background work on threads that grow with the need: a task never waits for another, unless
/// the system has no more threads. The destructor waits for the tasks that run, and drops those
/// that have not begun.
class ThreadPool final : public Background {
public:
    ThreadPool() = default;
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;
    ~ThreadPool() override;

    void run(Task task) override;

private:
    void work();
    /// Waits for the next task; empty at the end.
    Task next();
    void addThread();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;                    ///< threads without a task
    std::size_t looking_ = 0;                 ///< those of them that need not be woken
    std::atomic<std::size_t> taskCount_ = 0;  ///< of `tasks_`, for a look without the lock
    bool stopping_ = false;
};

}  // namespace bildkurier
