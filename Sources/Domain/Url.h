// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace bildkurier {

/// Where a file or folder is: on this computer ("file") or on a server ("sftp"). All parts
/// are held decoded; a path is bytes and need not be valid UTF-8. An absent part is empty.
struct Url {
    std::string scheme;
    std::string user;
    std::string host;
    std::optional<std::uint16_t> port;
    std::string path;

    /// The file or folder `path` of this computer.
    static Url file(std::string path);

    bool isFile() const { return scheme == "file"; }

    /// This URL one level deeper, with exactly one "/" in front of `component`.
    Url appending(std::string_view component) const;

    /// The path's `lastPathComponent`.
    std::string lastComponent() const;

    bool operator==(const Url&) const = default;
};

}  // namespace bildkurier
