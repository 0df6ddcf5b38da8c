// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardToServer.h"
#include "ConnectionlessRunner.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// A server that knows nothing but what every one does: no links, no renaming that replaces, no
/// free space.
class SftpPlainServerTest : public testing::Test {
protected:
    void SetUp() override {
        if (!ConnectionlessRunner::isInstalled())
            GTEST_SKIP() << "sftp-server fehlt (Paket openssh-sftp-server)";
        fs::permissions(program, fs::perms::owner_all);
    }

    TemporaryFolder folder;
    const std::string program = folder.write(
        "plain", std::string("#!/bin/sh\nexec ") + ConnectionlessRunner::usualServer +
                     " -P posix-rename,hardlink,statvfs,fstatvfs,limits,fsync,lsetstat,"
                     "copy-data,expand-path,home-directory,users-groups-by-id\n");
    const Url root{.scheme = "sftp", .host = "nas", .path = folder.makeFolder("server")};
    std::shared_ptr<SFTPFileStore> store =
        std::make_shared<SFTPFileStore>(std::make_shared<ConnectionlessRunner>(program),
                                        "/usr/bin/sftp", SSHLogin::userSSH, folder.url("root"));
};

TEST_F(SftpPlainServerTest, TakesACardAndThenNothing) {
    const Tree card{{"IMG_0001.JPG", "one"}, {"IMG_0002.JPG", "two"}};
    CardToServer import(card, store, root);
    EXPECT_EQ(import.import().done, 2);
    EXPECT_EQ(import.import().total, 0);
    EXPECT_EQ(tree(root.path), card);
}

TEST_F(SftpPlainServerTest, IsProbedAndLeftAsItWas) {
    EXPECT_TRUE(store->isWritableDirectory(root));
    EXPECT_EQ(store->availableCapacity(root), std::nullopt);
    EXPECT_EQ(tree(root.path), Tree{});
}

TEST_F(SftpPlainServerTest, LetsNothingBeReplaced) {
    folder.write("server/IMG_0001.JPG", "another");
    const auto moved =
        store->moveItem(Url::file(folder.write("staged", "one")), root.appending("IMG_0001.JPG"));
    ASSERT_FALSE(moved);
    EXPECT_TRUE(moved.error().message.starts_with(
        "Übertragung fehlgeschlagen: Der Server meldet einen Fehler (remote rename "))
        << moved.error().message;
    EXPECT_EQ(tree(root.path), (Tree{{"IMG_0001.JPG", "another"}}));
    EXPECT_TRUE(fs::exists(folder.path("staged")));
}

}  // namespace
}  // namespace bildkurier
