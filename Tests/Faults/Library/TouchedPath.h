// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <string_view>

namespace bildkurier::faults {

/// The absolute path that a call means. Takes no memory from the heap, so that it can be
/// worked out in a signal handler.
class TouchedPath {
public:
    TouchedPath() = default;
    /// The file or folder behind a descriptor.
    explicit TouchedPath(int descriptor);
    /// `path` as the system takes it with the folder descriptor `folder`; null or empty for
    /// the folder itself.
    TouchedPath(int folder, const char* path);

    std::string_view text() const { return {bytes_.data(), length_}; }
    /// Whether it is `root` or anything below it.
    bool isWithin(std::string_view root) const;

private:
    void append(std::string_view text);

    std::array<char, std::size_t{2} * PATH_MAX> bytes_;
    std::size_t length_ = 0;
};

}  // namespace bildkurier::faults
