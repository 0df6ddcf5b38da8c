// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string_view>

namespace bildkurier {

/// The meaning of all that ends a connection.
inline constexpr std::string_view lostConnection = "Die Verbindung ist abgebrochen";

/// What the line with which the sftp client, or the server through it, complains means, as a
/// German clause; absent when it is none of those that are known.
std::optional<std::string_view> meaningOf(std::string_view line);

/// The line of the client's whole output that says what `line`, why it failed in the end, is a
/// consequence of: `line` itself if there is none.
std::string_view causeOf(std::string_view line, std::string_view output);

}  // namespace bildkurier
