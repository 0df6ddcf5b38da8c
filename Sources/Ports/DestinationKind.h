// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace bildkurier {

/// What a destination is: a folder of this computer, or one on an SFTP server.
enum class DestinationKind : std::uint8_t { folder, sftp };

/// How it is stored: "folder" or "sftp".
std::string_view rawValue(DestinationKind kind);

/// The kind stored as exactly this text; absent for any other.
std::optional<DestinationKind> destinationKind(std::string_view rawValue);

}  // namespace bildkurier
