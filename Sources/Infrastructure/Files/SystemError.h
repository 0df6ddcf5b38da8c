// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Error.h"

#include <string>

namespace bildkurier {

/// What the errno value `code` means, as a German clause for the window, without a full stop:
/// it is quoted behind a colon.
Error systemError(int code);

}  // namespace bildkurier
