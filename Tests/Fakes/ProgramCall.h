// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramResult.h"

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace bildkurier {

/// A program to run as a child, with standard input empty and this process's environment.
struct ProgramCall {
    std::string path;
    std::vector<std::string> arguments;
    /// Added to the environment, or replacing what is there.
    std::map<std::string, std::string> environment;
    std::chrono::seconds deadline{30};

    /// Blocks until the program has ended; ends it when the deadline has passed. Any thread.
    /// Throws where it cannot be started.
    ProgramResult run() const;
};

/// Runs a command, its program looked for as a shell does; whether it exited with 0.
bool succeeds(std::vector<std::string> command);

}  // namespace bildkurier
