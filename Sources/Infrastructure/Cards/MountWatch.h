// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "MainQueue.h"
#include "MountTable.h"

#include <functional>
#include <optional>
#include <span>
#include <thread>

namespace bildkurier {

/// Watches the mount table on a thread of its own.
class MountWatch {
public:
    /// Receives the table at first, after every change, and once more when the time has come
    /// that it answered last.
    using Look = std::function<std::optional<Instant>(std::span<const Mount> table)>;

    explicit MountWatch(Look look);
    MountWatch(const MountWatch&) = delete;
    MountWatch& operator=(const MountWatch&) = delete;
    /// Waits for a look under way.
    ~MountWatch();

private:
    void watch() const;

    Look look_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace bildkurier
