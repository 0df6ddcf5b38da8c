// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace bildkurier {

void fatalError(const char* reason) {
    std::fprintf(stderr, "Fatal error: %s\n", reason);
    std::abort();
}

}  // namespace bildkurier
