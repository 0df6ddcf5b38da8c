// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileKey.h"
#include "SftpBatch.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bildkurier {

/// A walk over the folders of a server, one level after the other, which gathers the files
/// there. It asks nothing itself: it says what to ask, and reads the answers. One folder that
/// cannot be listed keeps it from no other.
class SftpKeyWalk {
public:
    explicit SftpKeyWalk(std::string folder) : level_{std::move(folder)} {}

    /// Whether there is a level left to list.
    bool goesOn() const { return levelsLeft_ > 0 && !level_.empty(); }
    /// What lists this level: one command for each of its folders.
    SftpCommands commands() const;
    /// Reads the client's answer and goes to the next level.
    void read(std::string_view output);

    /// Of the files so far, each once.
    FileKeys keys() const;
    /// Absolute paths and sizes in bytes. A file whose name can be read in two ways is there
    /// under both.
    const std::map<std::string, std::int64_t>& files() const { return files_; }
    /// Absolute paths of the folders that may hold more than was listed, and how the client
    /// complains of that; nothing where its answer cannot be read.
    const std::map<std::string, std::string>& unlisted() const { return unlisted_; }

private:
    int levelsLeft_ = 8;
    std::vector<std::string> level_;
    std::map<std::string, std::int64_t> files_;
    std::map<std::string, std::string> unlisted_;
};

}  // namespace bildkurier
