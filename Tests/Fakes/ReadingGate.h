// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <condition_variable>
#include <cstdint>
#include <limits>
#include <mutex>

namespace bildkurier {

/// How far files can be read: whoever wants more waits. Open at first. Any thread.
class ReadingGate {
public:
    /// From now on files can be read no further than this many bytes.
    void closeAt(std::uintmax_t bytes) {
        const std::lock_guard lock(mutex_);
        limit_ = bytes;
    }
    /// Lets so many more be read.
    void letThrough(std::uintmax_t bytes) {
        const std::lock_guard lock(mutex_);
        limit_ += bytes;
        moved_.notify_all();
    }
    void open() {
        const std::lock_guard lock(mutex_);
        limit_ = everything;
        moved_.notify_all();
    }

    /// Waits until a file can be read to its byte `end`.
    void pass(std::uintmax_t end) {
        std::unique_lock lock(mutex_);
        moved_.wait(lock, [&] { return end <= limit_; });
    }

private:
    static constexpr std::uintmax_t everything = std::numeric_limits<std::uintmax_t>::max();

    std::mutex mutex_;
    std::condition_variable moved_;
    std::uintmax_t limit_ = everything;
};

}  // namespace bildkurier
