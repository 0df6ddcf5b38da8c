// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MountTable.h"

#include <span>
#include <string>
#include <string_view>

namespace bildkurier {

/// Whether one of two folders of this computer lies in the other, links resolved as far as they
/// exist, or shares files with it by way of another mount. Blocks.
bool foldersOverlap(const std::string& folder, const std::string& other);

/// Whether the same part of a volume is reached through two folders, absolute paths without links.
bool shareVolume(std::span<const Mount> table, std::string_view folder, std::string_view other);

}  // namespace bildkurier
