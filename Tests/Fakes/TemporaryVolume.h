// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// A volume of its own, mounted for the length of a test. That needs root and tools: tests
/// skip when `isMounted` is false.
class TemporaryVolume {
public:
    /// In memory, with room for `bytes`.
    explicit TemporaryVolume(std::uint64_t bytes);
    /// On a file of `bytes`, of which the command `format`, followed by its path, makes a
    /// volume.
    TemporaryVolume(std::uint64_t bytes, std::vector<std::string> format);
    TemporaryVolume(const TemporaryVolume&) = delete;
    TemporaryVolume& operator=(const TemporaryVolume&) = delete;
    ~TemporaryVolume();

    bool isMounted() const { return mounted_; }
    std::string path() const { return around_.path("volume"); }
    Url url(std::string_view relative) const { return Url::file(path()).appending(relative); }
    /// Writes a file, making the folders above it; answers its path.
    std::string write(const std::string& relative, std::string_view contents) const;

private:
    void mount(std::vector<std::string> how);

    TemporaryFolder around_;
    bool mounted_ = false;
};

}  // namespace bildkurier
