// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <string>

namespace bildkurier {

/// An empty file of this computer, to be put somewhere as a test. Several may have it at once, in
/// this process and in others: it goes with the last of them. One that a crash has left behind is
/// taken over.
class ProbeFile {
public:
    explicit ProbeFile(std::string path);
    ProbeFile(const ProbeFile&) = delete;
    ProbeFile& operator=(const ProbeFile&) = delete;
    ~ProbeFile();

    /// Whether it could be made.
    explicit operator bool() const { return static_cast<bool>(file_); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    FileDescriptor file_;  ///< locked, together with all others who have it
};

}  // namespace bildkurier
