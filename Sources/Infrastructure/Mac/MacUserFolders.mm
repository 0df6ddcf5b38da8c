// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FatalError.h"
#include "FoundationValues.h"
#include "UserFolders.h"

namespace bildkurier {

namespace {

std::string userFolder(NSSearchPathDirectory kind) {
    const auto path =
        textOf(NSSearchPathForDirectoriesInDomains(kind, NSUserDomainMask, YES).firstObject);
    if (!path) fatalError("the system names no folder for the user's data");
    return *path;
}

}  // namespace

std::string configurationFolder() { return dataFolder() + "/Bildkurier"; }

std::string dataFolder() { return userFolder(NSApplicationSupportDirectory); }

std::string cachesFolder() { return userFolder(NSCachesDirectory); }

std::string runtimeFolder() { return dataFolder() + "/Bildkurier"; }

}  // namespace bildkurier
