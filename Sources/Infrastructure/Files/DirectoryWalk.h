// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>

namespace bildkurier {

/// A regular file met by `walkFiles`.
struct WalkedFile {
    std::string_view folder;  ///< relative to the root of the walk; empty for the root itself
    std::string_view name;
    std::int64_t size = 0;  ///< bytes
    std::timespec modified{};
};

/// What a walk reports. Called from several threads at once, each with a worker number of its
/// own below `WalkOptions::workers`. The views last for the call.
struct WalkVisitor {
    std::function<void(std::size_t worker, const WalkedFile&)> file;
    /// A folder that could not be opened or read to its end, with the errno; optional.
    std::function<void(std::size_t worker, std::string_view folder, int error)> unreadable;
    /// Something hidden, which is not looked into: the folder that it is in, and its name;
    /// optional.
    std::function<void(std::size_t worker, std::string_view folder, std::string_view name)> hidden;
};

struct WalkOptions {
    std::size_t workers = 1;          ///< threads, each reading a folder of its own
    std::function<bool()> cancelled;  ///< asked between folders; optional; any thread
};

/// Walks the regular files below the folder `root`, at any depth: with directory descriptors,
/// never through a link, hidden files and folders left out. Blocks until done. The first
/// folder is `root` itself, followed if it is a link.
void walkFiles(const std::string& root, const WalkOptions& options, const WalkVisitor& visitor);

}  // namespace bildkurier
