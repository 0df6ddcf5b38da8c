// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserFolders.h"

#include "EnvironmentValue.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

namespace bildkurier {

namespace {

/// A base directory; a variable that holds no absolute path counts for nothing.
std::string baseDirectory(const char* name, std::string_view belowHome) {
    if (const std::string set = environmentValue(name); set.starts_with('/')) return set;
    const std::string home = environmentValue("HOME");
    return fmt::format("{}/{}", home.empty() ? homeFolder() : home, belowHome);
}

bool isOwnFolder(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid();
}

}  // namespace

std::string configurationFolder() {
    return baseDirectory("XDG_CONFIG_HOME", ".config") + "/bildkurier";
}

std::string cachesFolder() { return baseDirectory("XDG_CACHE_HOME", ".cache"); }

std::string dataFolder() { return baseDirectory("XDG_DATA_HOME", ".local/share"); }

std::string runtimeFolder() {
    for (const auto& folder :
         {environmentValue("XDG_RUNTIME_DIR"), fmt::format("/run/user/{}", ::geteuid())})
        if (folder.starts_with('/') && isOwnFolder(folder)) return folder + "/bildkurier";
    return baseDirectory("XDG_STATE_HOME", ".local/state") + "/bildkurier";
}

}  // namespace bildkurier
