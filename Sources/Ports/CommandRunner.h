// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandResult.h"

#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Runs the system's programs.
///
/// Threads  Any, several at once; a call blocks until the program has ended.
/// Errors   A program that cannot be started has the status -1 and says why in its output.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;

    /// Runs the program at the absolute path `program`. `arguments` follow its name, each as
    /// one argument: no shell reads them. `input` is all that it can read; without one it has
    /// no input at all.
    virtual CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                              const std::optional<std::string>& input) = 0;
};

}  // namespace bildkurier
