// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace bildkurier {

/// A folder on an SFTP server, in the parts that the form for it has.
struct ServerAddress {
    std::string user;
    std::string host;  ///< may end in ":port"
    std::string path;

    /// Understands "sftp://user@host:port/path", the path with %20 and the like. Else the
    /// sentence to show.
    static std::expected<ServerAddress, std::string> parse(std::string_view text);

    bool operator==(const ServerAddress&) const = default;
};

/// Whether the text is meant as the address of a server.
bool isServerAddress(std::string_view text);

}  // namespace bildkurier
