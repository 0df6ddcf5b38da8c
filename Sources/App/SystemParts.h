// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "Bookmarks.h"
#include "IdleSleepBlocker.h"
#include "MainQueue.h"
#include "NativeCamera.h"

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

// What each system has its own of.

/// All cameras and cards of this computer, or, where some are named, only these folders.
std::unique_ptr<NativeBrowser> systemCameras(MainQueue& main, Background& background,
                                             std::vector<std::string> folders);
std::shared_ptr<IdleSleepBlocker> systemSleepBlocker();
std::shared_ptr<Bookmarks> systemBookmarks();

}  // namespace bildkurier
