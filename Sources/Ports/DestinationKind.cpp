// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationKind.h"

namespace bildkurier {

std::string_view rawValue(DestinationKind kind) {
    return kind == DestinationKind::sftp ? "sftp" : "folder";
}

std::optional<DestinationKind> destinationKind(std::string_view rawValue) {
    if (rawValue == "folder") return DestinationKind::folder;
    if (rawValue == "sftp") return DestinationKind::sftp;
    return std::nullopt;
}

}  // namespace bildkurier
