// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifCaptureDates.h"
#include "IniUserDefaults.h"
#include "JoinedBrowsers.h"
#include "LogindSleepBlocker.h"
#include "MountedCards.h"
#include "PathBookmarks.h"
#include "SystemAdapters.h"
#include "UsbCameras.h"

#include <utility>

namespace bildkurier {

std::unique_ptr<NativeBrowser> systemCameras(MainQueue& main, Background& background,
                                             std::vector<std::string> folders) {
    const bool any = folders.empty();
    std::vector<std::unique_ptr<NativeBrowser>> sources;
    sources.push_back(std::make_unique<MountedCards>(
        main, background, std::make_shared<ExifCaptureDates>(),
        MountedCards::Options{.folders = std::move(folders), .volumes = any}));
    if (any) sources.push_back(std::make_unique<UsbCameras>(main, UsbCameras::Options{}));
    return std::make_unique<JoinedBrowsers>(std::move(sources));
}

std::shared_ptr<UserDefaults> systemDefaults() { return std::make_shared<IniUserDefaults>(); }

std::shared_ptr<Bookmarks> systemBookmarks() { return std::make_shared<PathBookmarks>(); }

std::shared_ptr<IdleSleepBlocker> systemSleepBlocker(Background& background) {
    return std::make_shared<LogindSleepBlocker>(background);
}

std::shared_ptr<FolderPicker> systemFolderPicker() { return nullptr; }

}  // namespace bildkurier
