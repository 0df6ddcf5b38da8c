// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderMark.h"
#include "MountTable.h"
#include "NativeCamera.h"

#include <string>

namespace bildkurier {

/// A folder of this computer that is a device.
struct CardPlace {
    std::string root;  ///< absolute path
    DeviceFacts facts;
    FolderMark mark;  ///< of `root`
    Mount mount;      ///< that `root` lies on
};

}  // namespace bildkurier
