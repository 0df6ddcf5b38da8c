// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserFolders.h"

#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace bildkurier {

namespace {

std::string variable(const char* name) {
    // Nothing in this program changes the environment. NOLINTNEXTLINE(concurrency-mt-unsafe)
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// Empty where the user database does not know the user.
std::string homeInDatabase(uid_t user) {
    std::vector<char> texts(1024);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(user, &entry, texts.data(), texts.size(), &found) == ERANGE)
        texts.resize(2 * texts.size());
    return found ? found->pw_dir : "";
}

/// A base directory; a variable that holds no absolute path counts for nothing.
std::string baseDirectory(const char* name, std::string_view belowHome) {
    if (const std::string set = variable(name); set.starts_with('/')) return set;
    const std::string home = variable("HOME");
    return fmt::format("{}/{}", home.empty() ? homeFolder() : home, belowHome);
}

bool isOwnFolder(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid();
}

}  // namespace

std::string homeFolder() { return homeFolder(::getuid()); }

std::string homeFolder(std::uint32_t user) {
    const std::string home = homeInDatabase(user);
    return home.empty() ? variable("HOME") : home;
}

std::string configurationFolder() {
    return baseDirectory("XDG_CONFIG_HOME", ".config") + "/bildkurier";
}

std::string cachesFolder() { return baseDirectory("XDG_CACHE_HOME", ".cache"); }

std::string dataFolder() { return baseDirectory("XDG_DATA_HOME", ".local/share"); }

std::string runtimeFolder() {
    for (const auto& folder :
         {variable("XDG_RUNTIME_DIR"), fmt::format("/run/user/{}", ::geteuid())})
        if (folder.starts_with('/') && isOwnFolder(folder)) return folder + "/bildkurier";
    return baseDirectory("XDG_STATE_HOME", ".local/state") + "/bildkurier";
}

}  // namespace bildkurier
