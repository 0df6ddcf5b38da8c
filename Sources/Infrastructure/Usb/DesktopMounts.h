// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UsbPlace.h"

#include <chrono>

namespace bildkurier {

/// Asks the desktop's file manager, which likes to mount cameras, to let go of this one.
/// Blocks, but not for much longer than `time`. Not on the main thread.
void releaseFromDesktop(const UsbPlace& place, std::chrono::milliseconds time);

}  // namespace bildkurier
