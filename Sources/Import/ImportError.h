// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Error.h"

#include <cstdint>

namespace bildkurier {

/// Why an import cannot begin.
struct ImportError {
    /// The largest file and the headroom do not fit into the `free` bytes. `largest` in bytes,
    /// without the headroom.
    static Error notEnoughSpace(std::int64_t largest, std::int64_t free);
};

}  // namespace bildkurier
