// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FakeCamera.h"
#include "FakeCameraFile.h"
#include "FakeFolderAccess.h"
#include "FakeFolderPicker.h"
#include "FakeRunLock.h"
#include "FakeSSHKeyring.h"
#include "FakeSleepBlocker.h"
#include "FakeWorkspace.h"
#include "ImportModel.h"
#include "ManualRunLoop.h"
#include "MemoryFileStore.h"
#include "MemorySettings.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// A model amid fakes. Change settings, `files` and the like before `make`.
class ImportModelTest : public testing::Test {
protected:
    void make() {
        model = std::make_shared<ImportModel>(
            ImportModel::Collaborators{
                .browser = nullptr,
                .fileStore = files,
                .settings = settings,
                .folderPicker = picker,
                .runner = std::make_unique<ImportRunner>(files, loop, loop),
                .autoImport = autoImport = std::make_shared<AutoImport>(settings, files),
                .sleepBlocker = sleepBlocker,
                .folderAccess = access,
                .runLock = lock,
                .keyring = keyring,
                .workspace = workspace,
                .homeFolder = "/home/anna"},
            loop, loop);
    }

    std::shared_ptr<FakeCamera> camera(const std::string& id,
                                       std::optional<std::string> identity = std::nullopt) {
        auto made = std::make_shared<FakeCamera>(id);
        made->deviceName = "Kamera " + id;
        made->deviceIdentity = std::move(identity);
        return made;
    }

    std::shared_ptr<FakeCameraFile> file(FakeCamera& on, std::optional<std::string> name,
                                         std::string contents,
                                         std::optional<Date> shot = std::nullopt) {
        auto made = std::make_shared<FakeCameraFile>(store, std::move(name), std::move(contents));
        made->shot = shot;
        on.catalogue.push_back(made);
        return made;
    }

    /// Attaches the camera and, when it is selected, delivers session and catalogue.
    void connect(const std::shared_ptr<FakeCamera>& added) {
        model->cameraBrowserDidAdd(added);
        deliver(*added);
    }

    void deliver(FakeCamera& from) {
        from.sessionOpened();
        from.catalogReady();
        loop.settle();
    }

    /// Notes the phases and statuses that show from now on, the present ones first.
    void record() {
        recorder = model->observe([this] { note(); });
        note();
    }

    void note() {
        if (phases.empty() || phases.back() != model->phase()) phases.push_back(model->phase());
        if (statuses.empty() || statuses.back() != model->status()) {
            statuses.push_back(model->status());
        }
    }

    ManualRunLoop loop;
    std::shared_ptr<MemoryFileStore> store = std::make_shared<MemoryFileStore>();
    std::shared_ptr<FileStore> files = store;
    std::shared_ptr<MemorySettings> settings = std::make_shared<MemorySettings>();
    std::shared_ptr<FakeFolderPicker> picker = std::make_shared<FakeFolderPicker>();
    std::shared_ptr<FakeSleepBlocker> sleepBlocker = std::make_shared<FakeSleepBlocker>();
    std::shared_ptr<FakeFolderAccess> access = std::make_shared<FakeFolderAccess>();
    std::shared_ptr<FakeRunLock> lock = std::make_shared<FakeRunLock>();
    std::shared_ptr<FakeSSHKeyring> keyring = std::make_shared<FakeSSHKeyring>();
    std::shared_ptr<FakeWorkspace> workspace = std::make_shared<FakeWorkspace>();
    std::shared_ptr<AutoImport> autoImport;
    std::shared_ptr<ImportModel> model;
    Handle recorder;
    std::vector<ImportModel::Phase> phases;
    std::vector<std::string> statuses;
};

}  // namespace bildkurier
