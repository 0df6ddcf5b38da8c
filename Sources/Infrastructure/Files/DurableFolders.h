// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <compare>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace bildkurier {

/// Makes folders durable, and each of them once, for that takes the disk as long as a small
/// picture. Any thread.
class DurableFolders {
public:
    /// Like `makeFolder`, but flushes nothing for a folder that it has answered 0 for and that
    /// still is the same under this path.
    int make(const std::string& path);

private:
    /// A folder under a path. The volume gives its number to another one once it is gone, but not
    /// the time at which it was made.
    struct Folder {
        std::string path;
        std::uint64_t device = 0;
        std::uint64_t number = 0;
        std::int64_t madeSeconds = 0;
        std::uint32_t madeNanoseconds = 0;

        auto operator<=>(const Folder&) const = default;
    };

    static std::optional<Folder> recognised(const std::string& path);

    std::mutex mutex_;
    std::set<Folder> durable_;
};

}  // namespace bildkurier
