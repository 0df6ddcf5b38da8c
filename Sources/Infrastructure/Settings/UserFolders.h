// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <string>

// The folders of the user who runs this process. They need not exist.

namespace bildkurier {

/// The home that the user database has, else $HOME.
std::string homeFolder();
/// The same of another user, by number; $HOME where the database does not know it.
std::string homeFolder(std::uint32_t user);

/// What the program keeps for good: bildkurier in $XDG_CONFIG_HOME or ~/.config.
std::string configurationFolder();

/// The folder for the data of all programs: $XDG_DATA_HOME or ~/.local/share.
std::string dataFolder();

/// The folder for what all programs can make again: $XDG_CACHE_HOME or ~/.cache.
std::string cachesFolder();

/// What matters only while processes of the user run: bildkurier in $XDG_RUNTIME_DIR or
/// /run/user/NUMBER, so that a process started without a session meets those of one; where the
/// user has neither, in $XDG_STATE_HOME or ~/.local/state.
std::string runtimeFolder();

}  // namespace bildkurier
