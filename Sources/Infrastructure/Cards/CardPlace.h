// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MountTable.h"
#include "NativeCamera.h"

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

/// A folder of this computer that is a device.
struct CardPlace {
    std::string root;  ///< absolute path
    DeviceFacts facts;
    std::uint64_t device = 0;                  ///< st_dev of `root`
    Mount mount;                               ///< that `root` lies on
    std::optional<std::uint64_t> mountNumber;  ///< of that, where it has one
};

}  // namespace bildkurier
