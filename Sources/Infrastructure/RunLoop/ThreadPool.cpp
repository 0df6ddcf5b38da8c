// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ThreadPool.h"

#include <system_error>
#include <utility>

namespace bildkurier {

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        tasks_.clear();
        changed_.notify_all();
    }
    for (std::thread& thread : threads_) thread.join();
}

void ThreadPool::run(Task task) {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    tasks_.push_back(std::move(task));
    if (idle_ < tasks_.size()) addThread();
    changed_.notify_one();
}

void ThreadPool::addThread() {
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // The task waits for a thread that is there, if one is.
        if (threads_.empty()) throw;
    }
}

void ThreadPool::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        ++idle_;
        changed_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
        --idle_;
        if (tasks_.empty()) return;
        {
            const Task task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
        }
        lock.lock();
    }
}

}  // namespace bildkurier
