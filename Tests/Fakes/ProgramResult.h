// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// How a program ended, and what it said.
struct ProgramResult {
    int exitStatus = -1;  ///< -1 if it did not exit by itself
    int signal = 0;       ///< what ended it, else 0
    bool hung = false;    ///< was ended because it took too long
    std::string out;
    std::string err;
};

}  // namespace bildkurier
