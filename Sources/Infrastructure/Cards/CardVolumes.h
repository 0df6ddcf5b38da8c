// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MountTable.h"

#include <span>
#include <vector>

namespace bildkurier {

/// The mounts of `table` that may be cards, in its order: volumes on a device of this computer
/// that can be seen where they are mounted and are no part of its system.
std::vector<Mount> cardVolumes(std::span<const Mount> table);

}  // namespace bildkurier
