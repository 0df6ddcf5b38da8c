// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace bildkurier {

/// Tells when folders may have gone or returned: it watches for their names and for those above
/// them, links included. File systems of other computers do not tell. One thread.
class FolderWatch {
public:
    explicit FolderWatch(std::vector<std::string> folders);

    /// Watches what is on the way to the folders now, and forgets what it was told before.
    void renew();
    /// Can be read once something was told; -1 where there is nothing to watch with.
    int descriptor() const { return told_.get(); }
    /// Takes what was told, and answers whether it concerns the folders.
    bool takeChange();

private:
    void watchWayTo(const std::filesystem::path& folder);

    std::vector<std::string> folders_;
    FileDescriptor told_;
    std::map<int, std::set<std::string>> names_;  ///< that matter in what is watched, by its number
};

}  // namespace bildkurier
