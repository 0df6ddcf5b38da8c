// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppContainer.h"

#include "AppSSHKeyring.h"
#include "AutoImport.h"
#include "BookmarkFileAccess.h"
#include "BookmarkFolderAccess.h"
#include "ExifCaptureDates.h"
#include "Fassung.h"
#include "FileStoreRouter.h"
#include "ImageCaptureBrowser.h"
#include "ImportLock.h"
#include "ImportRunner.h"
#include "IniUserDefaults.h"
#include "JoinedBrowsers.h"
#include "LocalFileStore.h"
#include "LogindSleepBlocker.h"
#include "MountedCards.h"
#include "PathBookmarks.h"
#include "SFTPFileStore.h"
#include "SettingsKey.h"
#include "UsbCameras.h"
#include "UserDefaultsSettings.h"
#include "UserFolders.h"

#include <utility>

namespace bildkurier {

AppContainer::Parts AppContainer::make(MainQueue& main, Background& background, Options options) {
    const bool sandboxed = Fassung::sandbox();
    const auto programs = std::make_shared<ProcessCommandRunner>();
    const auto keyring =
        std::make_shared<AppSSHKeyring>(AppSSHKeyring::standardDirectory(), programs);
    const auto sftpStore = std::make_shared<SFTPFileStore>(
        programs, "/usr/bin/sftp", [keyring, sandboxed] { return keyring->login(sandboxed); },
        Fassung::zwischenOrdner(cachesFolder()));
    const auto router =
        std::make_shared<FileStoreRouter>(std::make_shared<LocalFileStore>(), sftpStore);
    const auto defaults = options.defaults ? options.defaults : std::make_shared<IniUserDefaults>();
    const auto settings = std::make_shared<UserDefaultsSettings>(defaults);
    const bool anyCard = options.cards.empty();
    std::vector<std::unique_ptr<NativeBrowser>> sources;
    sources.push_back(std::make_unique<MountedCards>(
        main, background, std::make_shared<ExifCaptureDates>(),
        MountedCards::Options{.folders = std::move(options.cards), .volumes = anyCard}));
    if (anyCard) sources.push_back(std::make_unique<UsbCameras>(main, UsbCameras::Options{}));
    const auto browser =
        std::make_shared<ImageCaptureBrowser>(std::make_unique<JoinedBrowsers>(std::move(sources)));
    auto runner = std::make_unique<ImportRunner>(router, main, background);
    const auto bookmarks = std::make_shared<PathBookmarks>();
    const auto lock = std::make_shared<ImportLock>();
    const auto model = std::make_shared<ImportModel>(
        ImportModel::Collaborators{
            .browser = browser,
            .fileStore = router,
            .settings = settings,
            .folderPicker = options.folderPicker,
            .runner = std::move(runner),
            .autoImport = std::make_shared<AutoImport>(settings, router),
            .sleepBlocker = std::make_shared<LogindSleepBlocker>(),
            .folderAccess = std::make_shared<BookmarkFolderAccess>(
                defaults, SettingsKey::destinationBookmark, sandboxed, bookmarks),
            .runLock = lock,
            .keyring = keyring,
            .workspace = std::move(options.workspace),
            .homeFolder = homeFolder()},
        main, background);
    if (options.trusted) model->trustWhenConnected(*std::move(options.trusted));
    browser->onAttachedCamerasReported = std::move(options.onAttachedCamerasReported);
    if (options.discovers) browser->start(model);
    const auto keys = std::make_shared<SSHKeyModel>(
        SSHKeyModel::Collaborators{.keyring = keyring,
                                   .picker = std::move(options.folderPicker),
                                   .fileAccess = std::make_shared<BookmarkFileAccess>(bookmarks),
                                   .homeFolder = homeFolder()},
        sandboxed, main, background);
    return {
        .model = model, .keys = keys, .fileStore = router, .runLock = lock, .programs = programs};
}

}  // namespace bildkurier
