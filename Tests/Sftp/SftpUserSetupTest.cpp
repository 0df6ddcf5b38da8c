// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpServerTest.h"

#include <filesystem>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// A store that logs in as the user does, who has a configuration, keys and known servers of
/// their own; those of whoever runs the test are left alone.
class SftpUserSetupTest : public SftpServerTest {
protected:
    void SetUp() override {
        SftpServerTest::SetUp();
        if (IsSkipped()) return;
        configure("IdentityFile " + server->login().keyFile.path +
                  "\nStrictHostKeyChecking accept-new");
        const auto client =
            home.write("sftp", "#!/bin/sh\nexec /usr/bin/sftp -F " + home.path("config") +
                                   " -o UserKnownHostsFile=" + knownHosts() + " \"$@\"\n");
        fs::permissions(client, fs::perms::owner_all);
        usersStore = std::make_unique<SFTPFileStore>(std::make_shared<ProcessCommandRunner>(),
                                                     client, SSHLogin::userSSH, local.url("root"));
    }

    void configure(const std::string& lines) const {
        home.write("config", "Host *\nIdentityAgent none\n" + lines + "\n");
    }
    std::string knownHosts() const { return home.path("known_hosts"); }

    /// Why the server is of no use, after "… anlegen: ".
    std::string complaint() const {
        const auto made = usersStore->createDirectory(server->url("x"));
        const std::string prefix = "Ordner lässt sich nicht anlegen: ";
        if (made || !made.error().message.starts_with(prefix)) return "";
        return made.error().message.substr(prefix.size());
    }
    std::string advice() const {
        const auto root = server->root();
        return "Der Server ist nicht zu erreichen oder lässt die Anmeldung nicht zu. Den Grund "
               "zeigt im Terminal der Befehl: sftp -P " +
               std::to_string(*root.port) + " " + *SFTPFileStore::account(root);
    }

    TemporaryFolder home;
    std::unique_ptr<SFTPFileStore> usersStore;
};

TEST_F(SftpUserSetupTest, LogsInAsTheUserDoes) {
    const auto moved =
        usersStore->moveItem(Url::file(local.write("staged", "picture")), server->url("IMG_1.JPG"));
    ASSERT_TRUE(moved) << moved.error().message;
    EXPECT_EQ(serversTree(), (Tree{{"IMG_1.JPG", "picture"}}));
    EXPECT_TRUE(fs::exists(knownHosts()));
    EXPECT_FALSE(fs::exists(server->knownHosts()));
}

TEST_F(SftpUserSetupTest, AdvisesWhenTheServerTakesNoKeyOfTheUsers) {
    server->refuseKeys();
    EXPECT_EQ(complaint(), advice());
}

TEST_F(SftpUserSetupTest, AdvisesWhenTheUserDoesNotKnowTheServer) {
    configure("IdentityFile " + server->login().keyFile.path + "\nStrictHostKeyChecking ask");
    EXPECT_EQ(complaint(), advice());
}

TEST_F(SftpUserSetupTest, AdvisesWhenTheServerShowsAnotherKey) {
    ASSERT_TRUE(usersStore->createDirectory(server->url("x")));
    server->changeHostKey();
    EXPECT_EQ(complaint(), advice());
}

TEST_F(SftpUserSetupTest, SaysThatTheConnectionBrokeInTheMiddle) {
    const auto picture = local.write("staged", std::string(300'000, 'x'));
    server->connection().cutNext({100'000, unlimited});
    EXPECT_EQ(usersStore->moveItem(Url::file(picture), server->url("IMG_1.JPG")).error().message,
              "Übertragung fehlgeschlagen: Die Verbindung ist abgebrochen");
}

TEST_F(SftpUserSetupTest, SaysWhatTheServerRefuses) {
    fs::permissions(server->path(""), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(complaint().contains("Der Server verweigert den Zugriff (remote mkdir "))
        << complaint();
}

}  // namespace
}  // namespace bildkurier
