// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppContainer.h"

#include "AppSSHKeyring.h"
#include "AutoImport.h"
#include "BookmarkFileAccess.h"
#include "BookmarkFolderAccess.h"
#include "DestinationReader.h"
#include "Fassung.h"
#include "FileStoreRouter.h"
#include "ImageCaptureBrowser.h"
#include "ImportLock.h"
#include "ImportRunner.h"
#include "LocalFileStore.h"
#include "SFTPFileStore.h"
#include "ScratchDefaults.h"
#include "SettingsKey.h"
#include "SystemAdapters.h"
#include "UserDefaultsSettings.h"
#include "UserFolders.h"

#include <utility>

namespace bildkurier {

namespace {

AppContainer::Choices choicesIn(const std::shared_ptr<UserDefaults>& defaults) {
    return {.settings = std::make_shared<UserDefaultsSettings>(defaults),
            .folderAccess = std::make_shared<BookmarkFolderAccess>(
                defaults, SettingsKey::destinationBookmark, Fassung::sandbox(), systemBookmarks())};
}

}  // namespace

AppContainer::Choices AppContainer::choices() { return choicesIn(systemDefaults()); }

AppContainer::Parts AppContainer::make(MainQueue& main, Background& background, Options options) {
    const bool sandboxed = Fassung::sandbox();
    const auto picker = options.folderPicker ? options.folderPicker : systemFolderPicker();
    const auto programs = std::make_shared<ProcessCommandRunner>();
    const auto keyring =
        std::make_shared<AppSSHKeyring>(AppSSHKeyring::standardDirectory(), programs);
    const auto sftpStore = std::make_shared<SFTPFileStore>(
        programs, "/usr/bin/sftp", [keyring, sandboxed] { return keyring->login(sandboxed); },
        Fassung::zwischenOrdner(cachesFolder()));
    const auto router =
        std::make_shared<FileStoreRouter>(std::make_shared<LocalFileStore>(), sftpStore);
    const auto defaults = options.defaults ? options.defaults : systemDefaults();
    const Choices choices =
        choicesIn(std::make_shared<ScratchDefaults>(defaults, std::move(options.ownKeys)));
    options.choose(*choices.settings);
    const auto browser = std::make_shared<ImageCaptureBrowser>(
        systemCameras(main, background, std::move(options.cards)));
    auto runner = std::make_unique<ImportRunner>(router, main, background);
    const auto lock = std::make_shared<ImportLock>();
    const auto model = std::make_shared<ImportModel>(
        ImportModel::Collaborators{
            .browser = browser,
            .fileStore = router,
            .settings = choices.settings,
            .folderPicker = picker,
            .runner = std::move(runner),
            .autoImport = std::make_shared<AutoImport>(choices.settings, router),
            .sleepBlocker = systemSleepBlocker(background),
            .folderAccess = choices.folderAccess,
            .runLock = lock,
            .keyring = keyring,
            .workspace = std::move(options.workspace),
            .homeFolder = homeFolder()},
        main, background);
    if (options.trusted) model->trustWhenConnected(*std::move(options.trusted));
    browser->onAttachedCamerasReported = std::move(options.onAttachedCamerasReported);
    if (options.discovers) browser->start(model);
    const auto keys = std::make_shared<SSHKeyModel>(
        SSHKeyModel::Collaborators{
            .keyring = keyring,
            .picker = picker,
            .fileAccess = std::make_shared<BookmarkFileAccess>(systemBookmarks()),
            .homeFolder = homeFolder()},
        sandboxed, main, background);
    const auto proof = std::make_shared<CardProof>(
        CardProof::Collaborators{
            .reader = std::make_shared<DestinationReader>(sftpStore),
            .fileStore = router,
            .keyring = keyring,
            .runLock = lock,
            .staging = Fassung::zwischenOrdner(cachesFolder()).appending("verify")},
        main, background);
    return {.settings = choicesIn(defaults).settings,
            .folderAccess = choices.folderAccess,
            .model = model,
            .keys = keys,
            .proof = proof,
            .browser = browser,
            .fileStore = router,
            .keyring = keyring,
            .runLock = lock,
            .servers = sftpStore,
            .programs = programs};
}

void AppContainer::end(Parts parts, std::optional<ThreadPool>& background) {
    auto staged = parts.model->stagingDirectories();
    parts.proof->cancel();
    if (const auto copies = parts.proof->stagingToClear()) staged.push_back(*copies);
    parts.proof.reset();
    parts.model.reset();
    parts.browser.reset();
    parts.keys.reset();
    parts.servers->awaitProbes();
    parts.programs->endAll();
    background.reset();
    for (const Url& folder : staged) parts.fileStore->removeItem(folder);
}

}  // namespace bildkurier
