// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFileAccess.h"
#include "FakeSSHKeyring.h"
#include "GivenFile.h"
#include "KeyCommand.h"
#include "ManualRunLoop.h"
#include "RecordingReport.h"

#include <gtest/gtest.h>

#include <utility>

namespace bildkurier {
namespace {

using Command = CommandLine::Command;
using Lines = std::vector<std::string>;

class KeyCommandTest : public testing::Test {
protected:
    /// Runs a command to its end; what it reported and how it ended.
    std::pair<Lines, std::vector<ExitStatus>> run(Command command, bool replace = false) {
        std::vector<ExitStatus> ends;
        RecordingReport report;
        const auto keys = std::make_shared<SSHKeyModel>(
            SSHKeyModel::Collaborators{.keyring = keyring,
                                       .picker = std::make_shared<GivenFile>("/home/anna/id"),
                                       .fileAccess = std::make_shared<FakeFileAccess>(),
                                       .homeFolder = "/home/anna"},
            false, loop, loop);
        KeyCommand job({.command = command, .replace = replace}, keys, report,
                       [&](ExitStatus status) { ends.push_back(status); });
        job.begin();
        loop.settle();
        return {report.lines, ends};
    }

    static std::pair<Lines, std::vector<ExitStatus>> end(Lines lines, ExitStatus status) {
        return {std::move(lines), {status}};
    }

    ManualRunLoop loop;
    std::shared_ptr<FakeSSHKeyring> keyring = std::make_shared<FakeSSHKeyring>();
};

TEST_F(KeyCommandTest, ShowsTheKey) {
    EXPECT_EQ(run(Command::keyShow), end({"error: Die App hat noch keinen eigenen Schlüssel."},
                                         ExitStatus::destinationUnusable));
    keyring->key = "ssh-ed25519 abc";
    EXPECT_EQ(run(Command::keyShow),
              end({"status: ssh-ed25519 abc", "status: SHA256:ssh-ed25519 abc (ED25519)"},
                  ExitStatus::success));
}

TEST_F(KeyCommandTest, GeneratesAKey) {
    EXPECT_EQ(run(Command::keyGenerate),
              end({"status: Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server "
                   "eintragen."},
                  ExitStatus::success));
    EXPECT_EQ(keyring->key, "ssh-ed25519 neu1 bildkurier");
}

TEST_F(KeyCommandTest, ReplacesAKeyOnlyWhenTold) {
    keyring->key = "ssh-ed25519 abc";
    for (const Command command : {Command::keyGenerate, Command::keyImport}) {
        EXPECT_EQ(run(command),
                  end({"error: Es gibt schon einen Schlüssel. Mit --replace wird er ersetzt und "
                       "muss danach auch auf dem Server ersetzt werden."},
                      ExitStatus::destinationUnusable));
    }
    EXPECT_EQ(keyring->key, "ssh-ed25519 abc");
    EXPECT_EQ(keyring->imported, std::vector<Url>());
    EXPECT_EQ(run(Command::keyGenerate, true).second, std::vector{ExitStatus::success});
    EXPECT_EQ(keyring->key, "ssh-ed25519 neu1 bildkurier");
    EXPECT_EQ(run(Command::keyImport, true).second, std::vector{ExitStatus::success});
    EXPECT_EQ(keyring->imported, std::vector{Url::file("/home/anna/id")});
}

TEST_F(KeyCommandTest, ReplacesAKeyWithoutAPublicHalfOnlyWhenTold) {
    keyring->key = "ssh-ed25519 abc";
    keyring->isPublicHalfReadable = false;
    EXPECT_EQ(run(Command::keyShow),
              end({"error: Der öffentliche Teil des Schlüssels fehlt oder ist nicht lesbar. Den "
                   "Schlüssel neu erzeugen oder noch einmal übernehmen."},
                  ExitStatus::destinationUnusable));
    EXPECT_EQ(run(Command::keyGenerate).second, std::vector{ExitStatus::destinationUnusable});
    EXPECT_EQ(keyring->key, "ssh-ed25519 abc");
    EXPECT_EQ(run(Command::keyGenerate, true).second, std::vector{ExitStatus::success});
    EXPECT_EQ(keyring->key, "ssh-ed25519 neu1 bildkurier");
}

TEST_F(KeyCommandTest, RemovesAKeyWithoutAPublicHalf) {
    keyring->key = "ssh-ed25519 abc";
    keyring->isPublicHalfReadable = false;
    EXPECT_EQ(run(Command::keyRemove),
              end({"status: Schlüssel der App gelöscht."}, ExitStatus::success));
    EXPECT_FALSE(keyring->hasPrivateKey());
}

TEST_F(KeyCommandTest, TakesOverTheNamedFile) {
    EXPECT_EQ(run(Command::keyImport), end({"status: Schlüssel übernommen."}, ExitStatus::success));
    EXPECT_EQ(keyring->imported, std::vector{Url::file("/home/anna/id")});
}

TEST_F(KeyCommandTest, SaysWhyAKeyIsNoGood) {
    keyring->error = Error{"Das ist kein Schlüssel."};
    for (const Command command : {Command::keyGenerate, Command::keyImport}) {
        EXPECT_EQ(run(command),
                  end({"error: Das ist kein Schlüssel."}, ExitStatus::destinationUnusable));
    }
}

TEST_F(KeyCommandTest, RemovesTheKey) {
    keyring->key = "ssh-ed25519 abc";
    EXPECT_EQ(run(Command::keyRemove),
              end({"status: Schlüssel der App gelöscht."}, ExitStatus::success));
    EXPECT_FALSE(keyring->hasKey());
}

TEST_F(KeyCommandTest, SaysThatThereIsNoKeyToRemove) {
    EXPECT_EQ(run(Command::keyRemove),
              end({"status: Die App hat noch keinen eigenen Schlüssel."}, ExitStatus::success));
}

TEST_F(KeyCommandTest, DoesNotClaimToHaveRemovedAKeyThatIsStillThere) {
    keyring->key = "ssh-ed25519 abc";
    keyring->error = Error{"Der Datenträger ist schreibgeschützt."};
    EXPECT_EQ(run(Command::keyRemove), end({"error: Der Schlüssel lässt sich nicht löschen."},
                                           ExitStatus::destinationUnusable));
}

}  // namespace
}  // namespace bildkurier
