// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppSSHKeyring.h"
#include "AutoImport.h"
#include "FakeFolderAccess.h"
#include "FakeFolderPicker.h"
#include "FakeRunLock.h"
#include "FakeSleepBlocker.h"
#include "FakeWorkspace.h"
#include "FileStoreRouter.h"
#include "ImportModel.h"
#include "LocalFileStore.h"
#include "ManualRunLoop.h"
#include "MemorySettings.h"
#include "SftpServerTest.h"

#include <fmt/format.h>

#include <utility>

namespace bildkurier {
namespace {

/// The model's form for a server, over a real server and the application's own key.
class SftpModelTest : public SftpServerTest {
protected:
    void SetUp() override {
        SftpServerTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_TRUE(keyring->importKey(server->login().keyFile));
        settings->storedDestination = local.url("bilder");
        const auto router =
            std::make_shared<FileStoreRouter>(std::make_shared<LocalFileStore>(), appStore);
        model = std::make_shared<ImportModel>(
            ImportModel::Collaborators{.browser = nullptr,
                                       .fileStore = router,
                                       .settings = settings,
                                       .folderPicker = std::make_shared<FakeFolderPicker>(),
                                       .runner = std::make_unique<ImportRunner>(router, loop, loop),
                                       .autoImport = std::make_shared<AutoImport>(settings, router),
                                       .sleepBlocker = std::make_shared<FakeSleepBlocker>(),
                                       .folderAccess = std::make_shared<FakeFolderAccess>(),
                                       .runLock = std::make_shared<FakeRunLock>(),
                                       .keyring = keyring,
                                       .workspace = std::make_shared<FakeWorkspace>(),
                                       .homeFolder = local.path()},
            loop, loop);
        const auto url = server->url("fotos");
        host = fmt::format("{}:{}", url.host, *url.port);
        model->setSftpUser(url.user);
        model->setSftpHost(host);
        model->setSftpPath(url.path);
    }

    void check() {
        model->applySFTPDestination();
        loop.settle();
    }

    std::shared_ptr<ProcessCommandRunner> programs = std::make_shared<ProcessCommandRunner>();
    std::shared_ptr<AppSSHKeyring> keyring =
        std::make_shared<AppSSHKeyring>(local.path("ssh"), programs);
    std::shared_ptr<SFTPFileStore> appStore = std::make_shared<SFTPFileStore>(
        programs, "/usr/bin/sftp", [this] { return keyring->login(true); }, local.url("root"));
    std::shared_ptr<MemorySettings> settings = std::make_shared<MemorySettings>();
    ManualRunLoop loop;
    std::shared_ptr<ImportModel> model;
    std::string host;
};

TEST_F(SftpModelTest, KnowsAServerAndRefusesAnotherKeyUntilToldToForget) {
    check();
    EXPECT_EQ(model->sftpStatus(), "Verbunden mit " + host + ".");
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_TRUE(model->sftpHostIsNew());
    const auto first = model->sftpHostFingerprint();
    ASSERT_TRUE(first);
    EXPECT_TRUE(first->starts_with("SHA256:")) << *first;
    EXPECT_EQ(model->dest(), server->url("fotos"));

    check();
    EXPECT_FALSE(model->sftpHostIsNew());
    EXPECT_EQ(model->sftpHostFingerprint(), first);

    server->changeHostKey();
    check();
    EXPECT_EQ(model->sftpStatus(),
              "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der "
              "Server neu eingerichtet wurde: gespeicherten Server-Schlüssel vergessen.");
    EXPECT_TRUE(model->sftpHostKeyMismatch());
    EXPECT_FALSE(model->sftpConnected());
    EXPECT_EQ(model->sftpHostFingerprint(), first);

    model->forgetSFTPHostKey();
    EXPECT_FALSE(model->sftpHostKeyMismatch());
    check();
    EXPECT_TRUE(model->sftpConnected());
    EXPECT_TRUE(model->sftpHostIsNew());
    EXPECT_NE(model->sftpHostFingerprint(), first);
}

TEST_F(SftpModelTest, ConnectsToNothingWithoutAKey) {
    keyring->removeKey();
    check();
    EXPECT_EQ(model->sftpStatus(),
              "Ordner lässt sich nicht anlegen: " + std::string(SFTPFileStore::missingKeyMessage));
    EXPECT_EQ(model->dest(), local.url("bilder"));
    EXPECT_TRUE(server->connection().finished().empty());
    ASSERT_TRUE(keyring->importKey(server->login().keyFile));
    check();
    EXPECT_TRUE(model->sftpConnected());
}

}  // namespace
}  // namespace bildkurier
