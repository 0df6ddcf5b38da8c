// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "FolderWatch.h"
#include "MainQueue.h"
#include "MountTable.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {

/// Watches the mount table, and folders that may go and return, on a thread of its own.
class MountWatch {
public:
    /// Receives the table at first, after every change of it or of where the folders are, and once
    /// more when the time has come that it answered last.
    using Look = std::function<std::optional<Instant>(std::span<const Mount> table)>;

    explicit MountWatch(Look look, std::vector<std::string> folders = {});
    MountWatch(const MountWatch&) = delete;
    MountWatch& operator=(const MountWatch&) = delete;
    /// Waits for a look under way.
    ~MountWatch();

private:
    void watch();

    Look look_;
    FolderWatch folders_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace bildkurier
