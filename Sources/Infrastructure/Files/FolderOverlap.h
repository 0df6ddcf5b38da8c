// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// Whether one of two folders of this computer lies in the other, links resolved as far as they
/// exist. Blocks.
bool foldersOverlap(const std::string& folder, const std::string& other);

}  // namespace bildkurier
