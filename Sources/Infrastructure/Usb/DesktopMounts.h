// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UsbPlace.h"
#include "UsbSession.h"

#include <chrono>

namespace bildkurier {

/// Asks the desktop's file manager, which likes to mount cameras, to let go of this one.
/// Blocks until it has answered, the session has ended or `time` is over; a thread of its own stays
/// behind where the desktop hangs. Not on the main thread.
void releaseFromDesktop(const UsbPlace& place, const UsbSession& session,
                        std::chrono::milliseconds time);

}  // namespace bildkurier
