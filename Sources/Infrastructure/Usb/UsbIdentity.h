// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"
#include "UsbPlace.h"

#include <string>

namespace bildkurier {

/// Empty for what makers put where no number was given, which many cameras have in common.
std::string actualSerial(const std::string& serial);

/// Whether a camera that is asked about itself is from then on controlled from here.
bool isControlledByAsking(const UsbPlace& place);

/// What is known of a camera without talking to it. Its serial number at the USB goes before the
/// one that it would tell itself: everybody can read it at any time, also while another program
/// holds the camera, so that a camera does not come back as another one.
DeviceFacts factsAtUsb(const UsbPlace& place);

}  // namespace bildkurier
