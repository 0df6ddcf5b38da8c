// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"

#include <optional>
#include <string>

namespace bildkurier {

/// The folder of this computer that a camera is; absent for one that is none.
std::optional<std::string> cardFolder(const Camera& camera);

/// Whether one of two folders lies in the other, links resolved as far as they exist. A card in
/// its own destination would count as imported already.
bool overlaps(const std::string& folder, const std::string& other);

}  // namespace bildkurier
