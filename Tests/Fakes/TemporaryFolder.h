// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <string>
#include <string_view>

namespace bildkurier {

/// An empty folder that vanishes, with everything in it, at the end of the test.
class TemporaryFolder {
public:
    /// Below the folder for temporary files, or below `parent`.
    TemporaryFolder();
    explicit TemporaryFolder(const std::string& parent);
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::string& path() const { return path_; }
    Url url() const { return Url::file(path_); }

    /// The path of `relative` inside; nothing is created.
    std::string path(std::string_view relative) const;
    Url url(std::string_view relative) const { return Url::file(path(relative)); }

    /// Writes a file, making the folders above it; answers its path.
    std::string write(std::string_view relative, std::string_view contents) const;
    /// Makes a folder and those above it; answers its path.
    std::string makeFolder(std::string_view relative) const;

private:
    std::string path_;
};

}  // namespace bildkurier
