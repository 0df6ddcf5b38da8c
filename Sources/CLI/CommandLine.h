// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "ExitStatus.h"
#include "FolderLayout.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bildkurier {

/// What the user asked for.
struct CommandLine {
    enum class Command : std::uint8_t { cameras, plan, import };

    Command command = Command::cameras;
    std::vector<std::string> cards;     ///< folders to take for cameras, absolute
    std::optional<std::string> camera;  ///< name or identity
    std::string destination;            ///< absolute path; empty for `cameras`
    FolderLayout layout{.byDate = false, .byType = true};
    std::optional<Date> since;
    bool json = false;
};

/// Why there is nothing to carry out: a call for help, or words that are off.
struct CommandLineAnswer {
    ExitStatus status = ExitStatus::usage;
    std::string text;  ///< for standard output on success, else for standard error
};

/// Understands the program's arguments, the program's name first.
std::expected<CommandLine, CommandLineAnswer> parseCommandLine(std::span<char* const> arguments);

}  // namespace bildkurier
