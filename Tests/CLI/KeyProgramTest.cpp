// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bildkurier {
namespace {

/// The key and the servers in folders of their own.
class KeyProgramTest : public ProgramTest {
protected:
    ProgramResult key(Strings words) const {
        words.insert(words.begin(), "key");
        return run(words, environment);
    }

    static constexpr auto noServer = "sftp://anna@127.0.0.1:1/fotos";

    Environment environment{{"XDG_CONFIG_HOME", folder.makeFolder("config")},
                            {"XDG_DATA_HOME", folder.path("data")},
                            {"XDG_CACHE_HOME", folder.path("cache")}};
};

TEST_F(KeyProgramTest, MakesShowsAndRemovesAKey) {
    EXPECT_EQ(key({"show"}).exitStatus, 4);
    const auto generated = key({"generate"});
    EXPECT_EQ(generated.exitStatus, 0) << generated.err;
    const auto shown = key({"show"});
    EXPECT_EQ(shown.exitStatus, 0);
    EXPECT_TRUE(shown.out.starts_with("ssh-ed25519 ")) << shown.out;
    EXPECT_NE(shown.out.find("\nSHA256:"), std::string::npos) << shown.out;
    EXPECT_TRUE(std::filesystem::exists(folder.path("data/Bildkurier/ssh/schluessel")));
    EXPECT_EQ(key({"generate"}).exitStatus, 4);
    EXPECT_EQ(key({"show"}).out, shown.out);
    EXPECT_EQ(key({"remove"}).exitStatus, 0);
    EXPECT_EQ(key({"show"}).exitStatus, 4);
}

TEST_F(KeyProgramTest, TakesOverAKey) {
    ASSERT_EQ(key({"generate"}).exitStatus, 0);
    const std::string shown = key({"show"}).out;
    const std::string copy = folder.path("id_ed25519");
    std::filesystem::copy_file(folder.path("data/Bildkurier/ssh/schluessel"), copy);
    ASSERT_EQ(key({"remove"}).exitStatus, 0);
    const auto imported = key({"import", copy});
    EXPECT_EQ(imported.exitStatus, 0) << imported.err;
    EXPECT_EQ(imported.out, "Schlüssel übernommen.\n");
    EXPECT_EQ(key({"show"}).out.substr(0, 60), shown.substr(0, 60));
    EXPECT_EQ(key({"import", copy}).exitStatus, 4);
    EXPECT_EQ(key({"import", copy, "--replace"}).exitStatus, 0);
    EXPECT_EQ(key({"import", folder.path("nothing"), "--replace"}).exitStatus, 4);
    EXPECT_EQ(key({"show"}).out.substr(0, 60), shown.substr(0, 60));
}

TEST_F(KeyProgramTest, ReplacesAPrivateKeyWithoutItsPublicHalfOnlyWhenTold) {
    const std::string keys = folder.path("data/Bildkurier/ssh");
    ASSERT_EQ(key({"generate"}).exitStatus, 0);
    const std::string publicHalf = keys + "/schluessel.pub";
    for (const bool isEmpty : {true, false}) {
        SCOPED_TRACE(isEmpty);
        std::filesystem::remove(publicHalf);
        if (isEmpty) folder.write("data/Bildkurier/ssh/schluessel.pub", "");
        const Tree before = tree(keys);
        EXPECT_EQ(key({"show"}).exitStatus, 4);
        EXPECT_EQ(key({"generate"}).exitStatus, 4);
        EXPECT_EQ(tree(keys), before);
        EXPECT_EQ(key({"generate", "--replace"}).exitStatus, 0);
        EXPECT_NE(tree(keys).at("schluessel"), before.at("schluessel"));
    }
    std::filesystem::remove(publicHalf);
    EXPECT_EQ(key({"remove"}).out, "Schlüssel der App gelöscht.\n");
    EXPECT_EQ(tree(keys), Tree{});
}

TEST_F(KeyProgramTest, IsDemandedWhereTheSystemConfinesTheProgram) {
    environment["APP_SANDBOX_CONTAINER_ID"] = "";
    const auto result = run({"sftp", "check", noServer}, environment);
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(result.err,
              "Ordner lässt sich nicht anlegen: Noch kein ssh-Schlüssel: unter Ziel → SFTP "
              "„Schlüssel erzeugen“ oder „übernehmen“.\n");
}

TEST_F(KeyProgramTest, LetsAFailedCheckLeaveTheDestinationAlone) {
    ASSERT_EQ(key({"generate"}).exitStatus, 0);
    const auto result = run({"sftp", "check", noServer}, environment);
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_TRUE(result.err.starts_with("Ordner lässt sich nicht anlegen: ")) << result.err;
    EXPECT_EQ(run({"settings", "destinationKind"}, environment).out, "destinationKind = folder\n");
    EXPECT_EQ(run({"settings", "sftpHost"}, environment).out, "sftpHost = \n");
}

TEST_F(KeyProgramTest, KeepsTheServerOfBeforeWhenTheCheckOfAnotherFails) {
    const std::vector<Strings> stored{{"destinationKind", "sftp"},
                                      {"sftpUser", "otto"},
                                      {"sftpHost", "nas:2222"},
                                      {"sftpPath", "/fotos"}};
    for (const auto& choice : stored)
        ASSERT_EQ(run({"settings", choice[0], choice[1]}, environment).exitStatus, 0);
    EXPECT_EQ(run({"sftp", "check", "sftp://anna@127.0.0.1:1/andere"}, environment).exitStatus, 4);
    for (const auto& choice : stored) {
        EXPECT_EQ(run({"settings", choice[0]}, environment).out,
                  choice[0] + " = " + choice[1] + "\n");
    }
}

TEST_F(KeyProgramTest, HasServersForgotten) {
    folder.write("data/Bildkurier/ssh/known_hosts",
                 "[127.0.0.1]:1 ssh-ed25519 "
                 "AAAAC3NzaC1lZDI1NTE5AAAAIAABAgMEBQYHCAkKCwwNDg8QERITFBUWFxgZGhscHR4f\n");
    for (const bool isKnown : {true, false}) {
        SCOPED_TRACE(isKnown);
        const auto result = run({"sftp", "forget", noServer}, environment);
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(result.out, "Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“.\n");
    }
}

}  // namespace
}  // namespace bildkurier
