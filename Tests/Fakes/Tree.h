// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <map>
#include <string>

namespace bildkurier {

/// Everything below a folder, hidden things too, by path relative to it: the contents of
/// files, "" for folders, whose paths end in "/", and "-> TARGET" for links.
using Tree = std::map<std::string, std::string>;

/// What is below `folder` on this computer now. Throws where it cannot be read.
Tree tree(const std::string& folder);

}  // namespace bildkurier
