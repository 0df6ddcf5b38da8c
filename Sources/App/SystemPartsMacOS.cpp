// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImageCaptureDevices.h"
#include "ProcessInfoSleepBlocker.h"
#include "SecurityScopedBookmarks.h"
#include "SystemParts.h"

namespace bildkurier {

std::unique_ptr<NativeBrowser> systemCameras(MainQueue& /*main*/, Background& /*background*/,
                                             std::vector<std::string> /*folders*/) {
    // The framework reports mounted cards, too.
    return std::make_unique<ImageCaptureDevices>();
}

std::shared_ptr<IdleSleepBlocker> systemSleepBlocker() {
    return std::make_shared<ProcessInfoSleepBlocker>();
}

std::shared_ptr<Bookmarks> systemBookmarks() { return std::make_shared<SecurityScopedBookmarks>(); }

}  // namespace bildkurier
