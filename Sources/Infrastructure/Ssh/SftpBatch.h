// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "SSHLogin.h"

#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// What the sftp client is told to do, one command a line.
using SftpCommands = std::vector<std::string>;

/// Why these commands must not reach the client, as a clause; absent when they may. The client
/// takes a line break for the end of a command, and breaks lines that are too long for it:
/// what comes behind would be a command of its own, even one for the shell.
std::optional<std::string> objection(const SftpCommands& commands);

/// Why the client would not take `account`, with a user in front of an "@" or without, for what
/// it is, as a clause; absent when it does.
std::optional<std::string> objectionToAccount(const std::string& account);

/// Why the client would not take the files of `login` for what they are, as a clause; absent
/// when it does.
std::optional<std::string> objectionToLogin(const SSHLogin& login);

}  // namespace bildkurier
