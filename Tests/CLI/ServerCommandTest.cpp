// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeServer.h"
#include "ModelCommandTest.h"
#include "ServerCommand.h"

namespace bildkurier {
namespace {

using Command = CommandLine::Command;

class ServerCommandTest : public ModelCommandTest {
protected:
    ServerCommandTest() {
        keyring->key = "ssh-ed25519 abc";
        files = server;
    }

    Lines run(Command which) {
        ends.clear();
        make();
        ServerCommand command(which, {.user = "anna", .host = "nas:2222", .path = "/fotos"}, model,
                              keyring, loop, report, done());
        command.begin();
        loop.settle();
        return reported();
    }

    std::shared_ptr<FakeServer> server = std::make_shared<FakeServer>(store, keyring);
};

TEST_F(ServerCommandTest, MakesTheServerTheDestination) {
    EXPECT_EQ(run(Command::sftpCheck),
              (Lines{"status: Verbunden mit nas:2222.",
                     "status: Erste Verbindung: Server-Schlüssel SHA256:erster (ED25519) "
                     "gespeichert. Mit dem Fingerabdruck auf dem Server vergleichen."}));
    expectEnd(ExitStatus::success);
    EXPECT_EQ(settings->storedKind, DestinationKind::sftp);
    EXPECT_EQ(settings->storedUser, "anna");
    EXPECT_EQ(settings->storedHost, "nas:2222");
    EXPECT_EQ(settings->storedPath, "/fotos");
}

TEST_F(ServerCommandTest, KnowsTheServerTheSecondTime) {
    run(Command::sftpCheck);
    EXPECT_EQ(run(Command::sftpCheck),
              (Lines{"status: Verbunden mit nas:2222.",
                     "status: Server-Schlüssel: SHA256:erster (ED25519)"}));
}

TEST_F(ServerCommandTest, ShowsNoKeyOfAServerThatTheUsersOwnSetupKnows) {
    keyring->key.reset();
    EXPECT_EQ(run(Command::sftpCheck), (Lines{"status: Verbunden mit nas:2222."}));
}

TEST_F(ServerCommandTest, SaysWhyAServerIsNoGood) {
    server->refusal = "Connection refused";
    EXPECT_EQ(run(Command::sftpCheck),
              (Lines{"error: Ordner lässt sich nicht anlegen: Connection refused"}));
    expectEnd(ExitStatus::destinationUnusable);
    EXPECT_EQ(settings->storedKind, DestinationKind::folder);
}

TEST_F(ServerCommandTest, ShowsTheKeyThatItStoredEvenIfTheFolderIsNoGood) {
    server->isWritable = false;
    EXPECT_EQ(run(Command::sftpCheck),
              (Lines{"status: Erste Verbindung: Server-Schlüssel SHA256:erster (ED25519) "
                     "gespeichert. Mit dem Fingerabdruck auf dem Server vergleichen.",
                     "error: Zielordner ist nicht beschreibbar."}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(ServerCommandTest, ForgetsAServersKey) {
    run(Command::sftpCheck);
    server->hostKey = "SHA256:zweiter (ED25519)";
    EXPECT_TRUE(
        run(Command::sftpCheck)
            .front()
            .starts_with(
                "error: Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden."));
    expectEnd(ExitStatus::destinationUnusable);
    EXPECT_EQ(run(Command::sftpForget),
              (Lines{"status: Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“."}));
    expectEnd(ExitStatus::success);
    EXPECT_TRUE(run(Command::sftpCheck)[1].starts_with("status: Erste Verbindung: "));
}

TEST_F(ServerCommandTest, HasForgottenAServerThatItNeverKnew) {
    EXPECT_EQ(run(Command::sftpForget),
              (Lines{"status: Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“."}));
    expectEnd(ExitStatus::success);
}

TEST_F(ServerCommandTest, DoesNotClaimToHaveForgottenAKeyThatIsStillThere) {
    run(Command::sftpCheck);
    keyring->error = Error{"Der Datenträger ist schreibgeschützt."};
    EXPECT_EQ(run(Command::sftpForget),
              (Lines{"error: Der Server-Schlüssel lässt sich nicht vergessen."}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(ServerCommandTest, EndsAtOnceWhenInterrupted) {
    make();
    ServerCommand command(Command::sftpCheck, {.user = "", .host = "nas", .path = "/"}, model,
                          keyring, loop, report, done());
    command.begin();
    command.interrupt();
    loop.settle();
    EXPECT_EQ(reported(), Lines());
    expectEnd(ExitStatus::interrupted);
}

}  // namespace
}  // namespace bildkurier
