// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ConnectionlessRunner.h"
#include "FileKey.h"
#include "OddNames.h"
#include "SFTPFileStore.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// The client and a server program, to which names are what they are with a connection.
class SftpNamesTest : public testing::Test {
protected:
    void SetUp() override {
        if (!ConnectionlessRunner::isInstalled())
            GTEST_SKIP() << "sftp-server fehlt (Paket openssh-sftp-server)";
        folder.makeFolder("server");
    }

    Url url(const std::string& relative) const {
        const auto root = folder.path("server");
        return {.scheme = "sftp",
                .host = "nas",
                .path = relative.empty() ? root : root + "/" + relative};
    }

    TemporaryFolder folder;
    SFTPFileStore store{std::make_shared<ConnectionlessRunner>(), "/usr/bin/sftp",
                        [] { return SSHLogin::userSSH(); }, folder.url("root")};
};

TEST_F(SftpNamesTest, TakesEveryName) {
    for (const auto& name : oddNames) {
        const auto staged = folder.write("staged", "picture of " + name);
        const auto moved = store.moveItem(Url::file(staged), url(name));
        ASSERT_TRUE(moved) << name << ": " << moved.error().message;
        EXPECT_FALSE(fs::exists(staged)) << name;
        EXPECT_TRUE(store.fileExists(url(name))) << name;
    }
    Tree expected;
    for (const auto& name : oddNames) expected[name] = "picture of " + name;
    EXPECT_EQ(tree(folder.path("server")), expected);
}

TEST_F(SftpNamesTest, KnowsEveryNameAgain) {
    // What looks like an escape of the client's might be one.
    FileKeys expected{fileKey("file ü end", 7)};
    for (const auto& name : oddNames) {
        for (const auto& parent : {"odd/" + name, std::string("odd")}) {
            folder.write(fmt::format("server/{}/file {} end", parent, name), "picture");
        }
        expected.insert(fileKey("file " + name + " end", 7));
    }
    EXPECT_EQ(store.existingFileKeys(url("")), expected);
}

}  // namespace
}  // namespace bildkurier
