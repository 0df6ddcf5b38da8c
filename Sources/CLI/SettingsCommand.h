// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ExitStatus.h"
#include "FolderAccess.h"
#include "Report.h"
#include "SettingsStore.h"

namespace bildkurier {

/// `settings`: prints the user's choices, or one of them, or changes it.
ExitStatus runSettings(const CommandLine& commandLine, SettingsStore& settings,
                       FolderAccess& folderAccess, Report& report);

}  // namespace bildkurier
