// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PartialFile.h"
#include "Result.h"

#include <condition_variable>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace bildkurier {

/// Appends to a file on a thread of its own, so that whoever brings the bytes need not wait for
/// the disk. To be used by one thread; meanwhile nobody else may touch the file.
class WriterThread {
public:
    explicit WriterThread(PartialFile& file) : file_(file) {}
    WriterThread(const WriterThread&) = delete;
    WriterThread& operator=(const WriterThread&) = delete;
    /// Drops what is not written yet, unless it was finished.
    ~WriterThread();

    /// Takes a copy, and waits while there is too much unwritten. Fails with what failed before.
    Result<> append(std::span<const char> bytes);

    /// Waits until all is written, and answers how that went. Once.
    Result<> finish();

private:
    bool start();
    void write();
    Result<> writeHere();
    void end(bool drop);

    PartialFile& file_;
    std::mutex mutex_;  ///< guards what follows, but for the thread
    std::condition_variable changed_;
    std::vector<char> waiting_;
    Result<> outcome_;
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace bildkurier
