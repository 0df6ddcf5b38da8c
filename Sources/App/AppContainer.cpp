// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppContainer.h"

#include "AutoImport.h"
#include "BookmarkFolderAccess.h"
#include "ExifCaptureDates.h"
#include "ImageCaptureBrowser.h"
#include "ImportLock.h"
#include "ImportRunner.h"
#include "IniUserDefaults.h"
#include "LocalFileStore.h"
#include "LogindSleepBlocker.h"
#include "MountedCards.h"
#include "PathBookmarks.h"
#include "SettingsKeys.h"
#include "UserDefaultsSettings.h"

#include <utility>

namespace bildkurier {

AppContainer::Parts AppContainer::make(MainQueue& main, Background& background, Options options) {
    constexpr bool sandboxed = false;
    const auto store = std::make_shared<LocalFileStore>();
    const auto defaults = options.defaults ? options.defaults : std::make_shared<IniUserDefaults>();
    const auto settings = std::make_shared<UserDefaultsSettings>(defaults);
    const bool anyCard = options.cards.empty();
    const auto browser = std::make_shared<ImageCaptureBrowser>(std::make_unique<MountedCards>(
        main, background, std::make_shared<ExifCaptureDates>(),
        MountedCards::Options{.folders = std::move(options.cards), .volumes = anyCard}));
    const auto lock = std::make_shared<ImportLock>();
    const auto model = std::make_shared<ImportModel>(
        ImportModel::Collaborators{
            .browser = browser,
            .fileStore = store,
            .settings = settings,
            .folderPicker = std::move(options.folderPicker),
            .runner = std::make_unique<ImportRunner>(store, main, background),
            .autoImport = std::make_shared<AutoImport>(settings, store),
            .sleepBlocker = std::make_shared<LogindSleepBlocker>(),
            .folderAccess = std::make_shared<BookmarkFolderAccess>(
                defaults, settingsKeys::destinationBookmark, sandboxed,
                std::make_shared<PathBookmarks>()),
            .runLock = lock},
        main, background);
    if (options.trusted) model->trustWhenConnected(*std::move(options.trusted));
    browser->onAttachedCamerasReported = std::move(options.onAttachedCamerasReported);
    browser->start(model);
    return {.model = model, .fileStore = store, .runLock = lock};
}

}  // namespace bildkurier
