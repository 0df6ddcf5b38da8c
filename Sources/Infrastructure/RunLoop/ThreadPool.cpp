// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ThreadPool.h"

#include "ComesSoon.h"

#include <system_error>
#include <utility>

namespace bildkurier {

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        tasks_.clear();
        taskCount_ = 0;
        changed_.notify_all();
    }
    for (std::thread& thread : threads_) thread.join();
}

void ThreadPool::run(Task task) {
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
    tasks_.push_back(std::move(task));
    taskCount_ = tasks_.size();
    if (idle_ < tasks_.size()) addThread();
    if (looking_ < tasks_.size()) changed_.notify_one();
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
    while (const Task task = next()) task();
}

Task ThreadPool::next() {
    std::unique_lock lock(mutex_);
    ++idle_;
    if (tasks_.empty()) {
        ++looking_;
        lock.unlock();
        comesSoon([this] { return taskCount_ > 0; });
        lock.lock();
        --looking_;
    }
    changed_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
    --idle_;
    if (tasks_.empty()) return {};
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    taskCount_ = tasks_.size();
    return task;
}

}  // namespace bildkurier
