// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WriterThread.h"

#include <cstddef>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

/// With fewer bytes, starting a thread takes longer than writing them.
constexpr std::size_t worthAThread = 64 << 10;
constexpr std::size_t mostWaiting = 2 << 20;

}  // namespace

WriterThread::~WriterThread() { end(true); }

Result<> WriterThread::append(std::span<const char> bytes) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] {
        return !outcome_ || waiting_.empty() || !thread_.joinable() ||
               waiting_.size() + bytes.size() <= mostWaiting;
    });
    if (!outcome_) return outcome_;
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    if (waiting_.size() >= worthAThread && !thread_.joinable() && !start()) return writeHere();
    changed_.notify_all();
    return {};
}

Result<> WriterThread::finish() {
    end(false);
    return outcome_ ? writeHere() : outcome_;
}

/// Answers whether it could.
bool WriterThread::start() {
    try {
        thread_ = std::thread([this] { write(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void WriterThread::write() {
    std::vector<char> bytes;
    std::unique_lock lock(mutex_);
    while (outcome_) {
        changed_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        bytes.clear();
        bytes.swap(waiting_);
        changed_.notify_all();
        lock.unlock();
        auto written = file_.append(bytes);
        lock.lock();
        outcome_ = std::move(written);
    }
    changed_.notify_all();
}

Result<> WriterThread::writeHere() { return outcome_ = file_.append(std::exchange(waiting_, {})); }

void WriterThread::end(bool drop) {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
        if (drop) waiting_.clear();
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

}  // namespace bildkurier
