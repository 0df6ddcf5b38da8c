// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// Ends the program: it has come into a state that cannot be. `reason` goes to standard error.
[[noreturn]] void fatalError(const char* reason);

}  // namespace bildkurier
