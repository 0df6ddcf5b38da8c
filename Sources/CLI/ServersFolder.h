// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string>

namespace bildkurier {

/// Why `path` is not taken for a folder of a server, as a sentence; absent when it is. Nobody
/// means it as it stands where it begins with "~" or has an address in it.
std::optional<std::string> objectionToServersFolder(const std::string& path);

}  // namespace bildkurier
