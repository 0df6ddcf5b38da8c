// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"
#include "VolumeIdentity.h"

#include <string>

namespace bildkurier {

/// What a volume is as a device, whether it was found or given by hand. `root` is where it is
/// mounted.
DeviceFacts volumeFacts(const VolumeIdentity& volume, const std::string& root);

}  // namespace bildkurier
