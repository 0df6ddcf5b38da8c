// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardCatalogue.h"
#include "Error.h"
#include "NativeCamera.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace bildkurier {

/// A download asked for.
struct UsbLoad {
    std::shared_ptr<const void> catalogue;  ///< keeps what follows alive
    const CardEntry& entry;
    std::string folder;  ///< of the camera
    DownloadRequest request;
    NativeDownloadDone done;
};

/// One time that a camera is open, from being asked for to being ended, shared by the main
/// thread and the camera's own. Each of its downloads is completed exactly once: by whoever
/// takes it from here first. Any thread.
class UsbSession {
public:
    enum class End : std::uint8_t { Not, Closed, Gone };

    /// Completes with why it failed what comes too late.
    void add(std::shared_ptr<UsbLoad> load);
    /// Whether the caller, and nobody else, completes the download.
    bool take(const std::shared_ptr<UsbLoad>& load);

    /// Completes all downloads. Only the first end counts.
    void end(End how);
    bool hasEnded() const;
    /// What fails after the end fails with.
    Error endReason() const;
    /// Whether it has ended; waits for that, but not longer than `time`.
    bool endsWithin(std::chrono::milliseconds time) const;
    /// Runs `action`, which makes or removes a file in `folder`, unless the session has ended; one
    /// at a time for all sessions, so that what it does there comes before what the next session
    /// does. It may end meanwhile: nobody waits for the disk but sessions that use that folder.
    void ifOpen(const std::string& folder, const std::function<void()>& action) const;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::shared_ptr<UsbLoad>> loads_;
    End ended_ = End::Not;
};

}  // namespace bildkurier
