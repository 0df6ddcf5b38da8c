// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "Bookmarks.h"
#include "FolderPicker.h"
#include "IdleSleepBlocker.h"
#include "MainQueue.h"
#include "NativeCamera.h"
#include "UserDefaults.h"

#include <memory>
#include <string>
#include <vector>

// What every system has its own adapters for. The build picks the source file.

namespace bildkurier {

/// All cameras and cards that come and go; where `folders` are given, these alone.
std::unique_ptr<NativeBrowser> systemCameras(MainQueue& main, Background& background,
                                             std::vector<std::string> folders);

/// The user's own.
std::shared_ptr<UserDefaults> systemDefaults();

std::shared_ptr<Bookmarks> systemBookmarks();

std::shared_ptr<IdleSleepBlocker> systemSleepBlocker(Background& background);

/// None where dialogs are the toolkit's.
std::shared_ptr<FolderPicker> systemFolderPicker();

}  // namespace bildkurier
