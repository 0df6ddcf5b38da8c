// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// The path with its links resolved as far as it exists, without a slash at the end; itself where
/// that cannot be found out. Blocks.
std::string resolvedPath(const std::string& path);

}  // namespace bildkurier
