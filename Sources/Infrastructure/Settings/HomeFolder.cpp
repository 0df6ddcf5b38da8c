// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EnvironmentValue.h"
#include "UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace bildkurier {

namespace {

/// Empty where the user database does not know the user.
std::string homeInDatabase(uid_t user) {
    std::vector<char> texts(1024);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(user, &entry, texts.data(), texts.size(), &found) == ERANGE)
        texts.resize(2 * texts.size());
    return found ? found->pw_dir : "";
}

}  // namespace

std::string homeFolder() { return homeFolder(::getuid()); }

std::string homeFolder(std::uint32_t user) {
    const std::string home = homeInDatabase(user);
    return home.empty() ? environmentValue("HOME") : home;
}

}  // namespace bildkurier
