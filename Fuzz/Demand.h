// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdlib>

namespace bildkurier {

/// Ends the program, and with that the fuzzing, where `holds` is false.
inline void demand(bool holds) {
    if (!holds) std::abort();
}

}  // namespace bildkurier
