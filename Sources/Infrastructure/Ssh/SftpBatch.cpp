// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpBatch.h"

#include "FileName.h"
#include "ServerName.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace bildkurier {
namespace {

constexpr std::size_t longestLine = 2046;  // of the client's 2048 bytes, without "\n" and NUL

/// Whether the client reads `path`, in quotes, as another one: it puts in what stands for
/// variables, and takes quotes and backslashes away.
bool isExpanded(const std::string& path) {
    return path.find_first_of("%\"\\") != std::string::npos || path.contains("${") ||
           hasControlCharacters(path);
}

}  // namespace

std::optional<std::string> objection(const SftpCommands& commands) {
    if (std::ranges::any_of(commands, hasControlCharacters))
        return "Der Pfad enthält Zeilenumbrüche oder Steuerzeichen";
    if (std::ranges::any_of(commands, [](const auto& line) { return line.size() > longestLine; }))
        return "Der Pfad ist zu lang";
    return {};
}

std::optional<std::string> objectionToAccount(const std::string& account) {
    const auto at = account.rfind('@');
    const bool isGood = at == std::string::npos
                            ? isHostName(account)
                            : isLoginName(std::string_view(account).substr(0, at)) &&
                                  isHostName(std::string_view(account).substr(at + 1));
    if (isGood) return {};
    return "Der Benutzer oder der Rechner ist ungültig";
}

std::optional<std::string> objectionToLogin(const SSHLogin& login) {
    if (isExpanded(login.keyFile.path) || isExpanded(login.knownHosts.path))
        return "Der Datenordner hat Zeichen im Namen, die ssh nicht versteht (% \" \\ ${)";
    return {};
}

}  // namespace bildkurier
