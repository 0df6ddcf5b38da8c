// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServersFolder.h"

#include "FileName.h"
#include "SftpBatch.h"

#include <fmt/format.h>

namespace bildkurier {

std::optional<std::string> objectionToServersFolder(const std::string& path) {
    if (const auto reason = objection({path})) return *reason + ".";
    // On the server neither means anything but a folder of that name.
    const bool isMisunderstood =
        path.starts_with('~') || path.starts_with("/~") || path.contains("://");
    if (!isMisunderstood) return {};
    return fmt::format("„{}“ ist kein Ordner des Servers wie /home/anna/fotos.", displayText(path));
}

}  // namespace bildkurier
