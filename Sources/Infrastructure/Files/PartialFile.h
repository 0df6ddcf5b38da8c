// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <cstdint>
#include <ctime>
#include <span>
#include <string>

namespace bildkurier {

/// A new file that grows, and is removed again unless it was completed, or another one has taken
/// its place. Every failure is a sentence for people.
class PartialFile {
public:
    PartialFile() = default;
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;
    ~PartialFile();

    /// Makes the file, through no link; `name` must be a plain file name. Once.
    Result<> create(const std::string& folder, std::string name, bool overwrite);

    Result<> append(std::span<const char> bytes);

    /// Closes the file and gives it its modification time where the file system lets it.
    Result<> complete(const std::timespec& modified);

    /// Leaves the file as it is: by now it may be somebody else's under its name.
    void disown() { isPartial_ = false; }

    std::int64_t size() const { return size_; }

private:
    bool isInItsPlace() const;

    FileDescriptor folder_;
    std::string name_;
    FileDescriptor file_;
    std::uint64_t device_ = 0;
    std::uint64_t inode_ = 0;
    std::int64_t size_ = 0;
    std::int64_t begun_ = 0;  ///< bytes that the disk has been told to write
    bool isPartial_ = false;
};

}  // namespace bildkurier
