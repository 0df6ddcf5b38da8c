// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandRunner.h"

namespace bildkurier {

/// Runs programs as child processes. They have this process's environment, in which they are
/// told never to ask anybody for a password, and nothing else of it: no open file, no blocked
/// or ignored signal.
class ProcessCommandRunner final : public CommandRunner {
public:
    CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::optional<std::string>& input) override;
};

}  // namespace bildkurier
