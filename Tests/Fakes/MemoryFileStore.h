// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"
#include "Tree.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace bildkurier {

/// A file system in memory, for one thread. Paths have no slash at their end.
class MemoryFileStore final : public FileStore {
public:
    /// Compares paths as a file system does that tells cases apart, or does not.
    struct PathOrder {
        bool ignoresCase = false;
        bool operator()(const std::string& a, const std::string& b) const;
    };

    explicit MemoryFileStore(bool ignoresCase = false)
        : files(PathOrder{ignoresCase}), folders({"/"}, PathOrder{ignoresCase}) {}

    std::map<std::string, std::string, PathOrder> files;  ///< contents by path
    std::set<std::string, PathOrder> folders;             ///< paths
    std::optional<std::int64_t> capacity = 1'000'000'000'000;
    bool isNetwork = false;
    /// Absent: a hidden folder in the destination.
    std::optional<Url> staging;
    std::set<std::string> kept;  ///< paths of what cannot be removed

    /// What is below `folder`.
    Tree tree(const Url& folder) const;

    Url stagingDirectory(const Url& destination) override;
    FileListing listing(const Url& folder) override;
    bool fileExists(const Url& url) override;
    std::optional<std::int64_t> fileSize(const Url& url) override;
    bool isWritableDirectory(const Url& url) override;
    bool isNetworkVolume(const Url& url) override;
    std::optional<std::int64_t> availableCapacity(const Url& url) override;
    Result<> createDirectory(const Url& url) override;
    Result<> moveItem(const Url& source, const Url& target) override;
    void removeItem(const Url& url) override;

private:
    /// Whether `path` lies below the folder `above`.
    bool isBelow(const std::string& path, const std::string& above) const;
    /// Where a new item goes, the folder above spelled as it is; absent when that is missing.
    std::optional<std::string> placeFor(const std::string& path) const;
};

}  // namespace bildkurier
