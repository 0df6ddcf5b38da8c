// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifCaptureDates.h"
#include "JoinedBrowsers.h"
#include "LogindSleepBlocker.h"
#include "MountedCards.h"
#include "PathBookmarks.h"
#include "SystemParts.h"
#include "UsbCameras.h"

#include <utility>

namespace bildkurier {

std::unique_ptr<NativeBrowser> systemCameras(MainQueue& main, Background& background,
                                             std::vector<std::string> folders) {
    const bool all = folders.empty();
    std::vector<std::unique_ptr<NativeBrowser>> browsers;
    browsers.push_back(std::make_unique<MountedCards>(
        main, background, std::make_shared<ExifCaptureDates>(),
        MountedCards::Options{.folders = std::move(folders), .volumes = all}));
    if (all) browsers.push_back(std::make_unique<UsbCameras>(main, UsbCameras::Options{}));
    return std::make_unique<JoinedBrowsers>(std::move(browsers));
}

std::shared_ptr<IdleSleepBlocker> systemSleepBlocker() {
    return std::make_shared<LogindSleepBlocker>();
}

std::shared_ptr<Bookmarks> systemBookmarks() { return std::make_shared<PathBookmarks>(); }

}  // namespace bildkurier
