// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FatalError.h"
#include "FinderFolderPicker.h"
#include "MacDeviceBrowser.h"
#include "ProcessInfoSleepBlocker.h"
#include "SecurityScopedBookmarks.h"
#include "StandardUserDefaults.h"
#include "SystemAdapters.h"

namespace bildkurier {

std::unique_ptr<NativeBrowser> systemCameras(MainQueue& /*main*/, Background& /*background*/,
                                             std::vector<std::string> folders) {
    if (!folders.empty()) fatalError("folders cannot be read as cards on this system");
    return std::make_unique<MacDeviceBrowser>();
}

std::shared_ptr<UserDefaults> systemDefaults() { return std::make_shared<StandardUserDefaults>(); }

std::shared_ptr<Bookmarks> systemBookmarks() { return std::make_shared<SecurityScopedBookmarks>(); }

std::shared_ptr<IdleSleepBlocker> systemSleepBlocker(Background& /*background*/) {
    return std::make_shared<ProcessInfoSleepBlocker>();
}

std::shared_ptr<FolderPicker> systemFolderPicker() {
    return std::make_shared<FinderFolderPicker>();
}

}  // namespace bildkurier
