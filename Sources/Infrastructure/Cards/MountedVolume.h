// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MountTable.h"
#include "VolumeIdentity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

/// What a look at a mount found there.
struct MountedVolume {
    Mount mount;
    std::optional<std::uint64_t> number;  ///< `mountNumber`
    VolumeIdentity identity;
};

/// Looks at `mount`, on which `folder` lies. Blocks.
MountedVolume mountedVolume(const Mount& mount, const std::string& folder);

/// Whether it was the same volume both times, as far as can be told: a card that is swapped for
/// another one gets the entry in the kernel's table that the first one had.
bool isSameVolume(const MountedVolume& before, const MountedVolume& now);

}  // namespace bildkurier
