// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// Whether a camera made the volume mounted at `path`: there are folders for its photos or
/// videos. The case of letters does not matter. Blocks.
bool hasCameraFolders(const std::string& path);

}  // namespace bildkurier
