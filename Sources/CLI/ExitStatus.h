// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>

namespace bildkurier {

/// What the command line tells whoever called it.
enum class ExitStatus : std::uint8_t {
    success = 0,              ///< all loaded, or nothing to do
    filesFailed = 1,          ///< at least one file failed
    usage = 2,                ///< the call's words are off
    noCamera = 3,             ///< no camera, or no such camera
    destinationUnusable = 4,  ///< that, or the key, a setting or the lock of imports
    interrupted = 130,        ///< ended by Ctrl-C
};

}  // namespace bildkurier
