// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Result.h"

#include <string>

namespace bildkurier {

/// Fails where a folder that the user gives for a card cannot be read. Blocks.
Result<> checkCardFolder(const std::string& path);

}  // namespace bildkurier
