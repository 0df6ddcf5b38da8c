// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MountTable.h"

#include <string>

namespace bildkurier {

/// What is known of a volume wherever it is mounted; empty where unknown. Untrusted.
struct VolumeIdentity {
    std::string uuid;    ///< of its file system
    std::string serial;  ///< of the device that holds it
    std::string label;   ///< of its file system

    bool operator==(const VolumeIdentity&) const = default;
};

/// Asks the device manager, and the device itself where that knows nothing. Blocks.
VolumeIdentity volumeIdentity(const Mount& mount);

}  // namespace bildkurier
