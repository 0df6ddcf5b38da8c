// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "ExitStatus.h"
#include "ServerAddress.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bildkurier {

/// What the user asked for.
struct CommandLine {
    enum class Command : std::uint8_t {
        cameras,
        plan,
        import,
        verify,
        watch,
        settings,
        keyShow,
        keyGenerate,
        keyImport,
        keyRemove,
        sftpCheck,
        sftpForget
    };

    Command command = Command::cameras;
    std::vector<std::string> cards;          ///< folders to take for cameras, absolute
    std::optional<std::string> camera;       ///< name or identity
    std::optional<std::string> destination;  ///< absolute path; absent: as in the settings
    std::optional<ServerAddress> server;     ///< the destination, or the one that is meant
    std::optional<bool> byDate;              ///< absent: as in the settings
    std::optional<bool> byType;
    std::optional<Date> since;
    std::optional<std::string> trust;  ///< name or identity of the camera to import by itself
    std::optional<std::string> key;    ///< of the setting to show, or to change
    std::optional<std::string> value;
    std::optional<std::string> file;  ///< the private key to take over; absolute path
    bool content = false;             ///< whether `verify` compares contents
    bool verify = false;              ///< whether `import` proves what it has loaded
    bool replace = false;             ///< whether the old key may be lost
    bool json = false;
};

/// Why there is nothing to carry out: a call for help, or words that are off.
struct CommandLineAnswer {
    ExitStatus status = ExitStatus::usage;
    std::string text;  ///< for standard output on success, else the error; no line break at the end
    bool json = false;  ///< whether a program asked, not a person
};

/// Understands the program's arguments, the program's name first.
std::expected<CommandLine, CommandLineAnswer> parseCommandLine(std::span<char* const> arguments);

}  // namespace bildkurier
