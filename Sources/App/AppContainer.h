// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CameraBrowser.h"
#include "CardProof.h"
#include "FileStore.h"
#include "FolderAccess.h"
#include "FolderPicker.h"
#include "ImportModel.h"
#include "MainQueue.h"
#include "ProcessCommandRunner.h"
#include "RunLock.h"
#include "SFTPFileStore.h"
#include "SSHKeyModel.h"
#include "SSHKeyring.h"
#include "SettingsStore.h"
#include "ThreadPool.h"
#include "UserDefaults.h"
#include "Workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace bildkurier {

/// Builds every object of the system once and connects them, whatever the front end.
struct AppContainer {
    /// What is kept between launches.
    struct Choices {
        std::shared_ptr<SettingsStore> settings;
        std::shared_ptr<FolderAccess> folderAccess;
    };

    /// What a front end may want otherwise.
    struct Options {
        /// Folders to take for cameras; all others are then left alone.
        std::vector<std::string> cards;
        std::shared_ptr<UserDefaults> defaults;  ///< none: the user's own
        /// What this process chooses for itself alone: keys that begin without a value, and what
        /// to choose under them before anybody reads it.
        std::set<std::string> ownKeys;
        std::function<void(SettingsStore&)> choose = [](SettingsStore&) {};
        std::shared_ptr<FolderPicker> folderPicker;  ///< none: the system's own, if any
        std::shared_ptr<Workspace> workspace;        ///< none: folders cannot be shown
        /// Name or identity of a camera to trust as soon as it is connected.
        std::optional<std::string> trusted;
        /// Called once the cameras attached at the start have been reported.
        std::function<void()> onAttachedCamerasReported = [] {};
        /// Whether to look for cameras, and to have the model use them.
        bool discovers = true;
    };

    /// What a front end works with. Ends before the main queue does.
    struct Parts {
        std::shared_ptr<SettingsStore> settings;     ///< the user's, whatever this process chooses
        std::shared_ptr<FolderAccess> folderAccess;  ///< to what this process chooses
        std::shared_ptr<ImportModel> model;
        std::shared_ptr<SSHKeyModel> keys;
        std::shared_ptr<CardProof> proof;
        std::shared_ptr<CameraBrowser> browser;  ///< started where cameras are looked for
        std::shared_ptr<FileStore> fileStore;
        std::shared_ptr<SSHKeyring> keyring;
        std::shared_ptr<RunLock> runLock;
        std::shared_ptr<SFTPFileStore> servers;
        /// Runs what the background waits for; to be ended before that is.
        std::shared_ptr<ProcessCommandRunner> programs;
    };

    /// The user's, for a front end that needs nothing else. Main thread.
    static Choices choices();

    /// Main thread. Discovery has begun when this returns; cameras are reported by tasks of the
    /// main queue. `main` must outlive `background`, and this the parts.
    static Parts make(MainQueue& main, Background& background, Options options);

    /// Drops an import that still runs, ends child programs and the background, leaves nothing
    /// staged, and only then lets another process import. Nobody else may hold the model any
    /// more. Main thread; blocks while a file is being moved into place.
    static void end(Parts parts, std::optional<ThreadPool>& background);
};

}  // namespace bildkurier
