// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "IniUserDefaults.h"
#include "LinePipe.h"
#include "OrdinaryUser.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace bildkurier {

namespace {

constexpr const char* memory = "/dev/shm";

/// In memory, where there is such a folder: there, writes follow each other faster than the
/// clock of the file system ticks.
TemporaryFolder fastFolder() {
    return std::filesystem::is_directory(memory) ? TemporaryFolder(memory) : TemporaryFolder();
}

std::string numbered(int number) { return fmt::format("{:06}", number); }

/// Writes a key many times; false when a value was lost on the way.
bool keepsAll(const std::string& path, const std::string& key, int times) {
    IniUserDefaults defaults(path);
    for (int i = 1; i <= times; ++i) {
        defaults.setString(key, numbered(i));
        if (defaults.string(key) != numbered(i)) return false;
    }
    return true;
}

/// The same in turns with another process; false when either's value was not to be seen.
bool keepsAllInTurns(const std::string& path, const std::string& mine, const std::string& theirs,
                     const LinePipe& myTurn, const LinePipe& theirTurn) {
    IniUserDefaults defaults(path);
    for (int i = 1; i <= 300; ++i) {
        const std::string seen = myTurn.read();
        if (defaults.string(theirs).value_or("") != seen) return false;
        if (i > 1 && defaults.string(mine) != numbered(i - 1)) return false;
        defaults.setString(mine, numbered(i));
        theirTurn.write(numbered(i));
    }
    return true;
}

TEST(IniUserDefaults, WritesOneFileForPeople) {
    const TemporaryFolder folder;
    IniUserDefaults defaults(folder.path("bildkurier.conf"));
    defaults.setString("dest", "/home/anna/Bilder");
    defaults.setBoolean("byType", false);
    EXPECT_EQ(tree(folder.path()), (Tree{{"bildkurier.conf",
                                          "[General]\nbyType=false\n"
                                          "dest=/home/anna/Bilder\n"}}));
}

TEST(IniUserDefaults, ReadsWhatPeopleWrite) {
    const TemporaryFolder folder;
    const IniUserDefaults defaults(folder.write("a.conf",
                                                "; Bemerkung\n[General]\nbyDate=true\n"
                                                "byType = false\nuseFromDate=maybe\n"
                                                "dest=/Bilder/Übung\nsftpPath=\"a, b\"\n"
                                                "sftpHost=a, b\nautoImportEnabled=\n"
                                                "fromDay=2024-05-09\nsftpUser=@Variant(x)\n"));
    EXPECT_EQ(defaults.boolean("byDate"), true);
    EXPECT_EQ(defaults.boolean("byType"), false);
    EXPECT_EQ(defaults.boolean("useFromDate"), std::nullopt);
    EXPECT_EQ(defaults.string("dest"), "/Bilder/Übung");
    EXPECT_EQ(defaults.string("sftpPath"), "a, b");
    EXPECT_EQ(defaults.string("sftpHost"), std::nullopt) << "a list";
    EXPECT_EQ(defaults.boolean("autoImportEnabled"), std::nullopt);
    EXPECT_EQ(defaults.string("fromDay"), "2024-05-09");
    EXPECT_EQ(defaults.string("sftpUser"), std::nullopt) << "of no known type";
}

TEST(IniUserDefaults, SeesAChangeByHand) {
    const TemporaryFolder folder;
    const IniUserDefaults defaults(folder.path("a.conf"));
    EXPECT_EQ(defaults.string("dest"), std::nullopt);
    folder.write("a.conf", "[General]\ndest=/eins\n");
    EXPECT_EQ(defaults.string("dest"), "/eins");
    folder.write("a.conf", "[General]\ndest=/anderswo\n");
    EXPECT_EQ(defaults.string("dest"), "/anderswo");
    std::filesystem::remove(folder.path("a.conf"));
    EXPECT_EQ(defaults.string("dest"), std::nullopt);
}

TEST(IniUserDefaults, KeepsChangesInADamagedFile) {
    const TemporaryFolder folder;
    for (const char* damaged :
         {"\x01\xFF[[[x\n=y\nabc\n[\nbyDate=true\n", "[General\nbyDate=true\n",
          "[General]\nKaputt\nbyDate=true\n", "unsinn"}) {
        const std::string path = folder.write("a.conf", damaged);
        IniUserDefaults defaults(path);
        EXPECT_EQ(defaults.string("dest"), std::nullopt) << damaged;
        EXPECT_FALSE(defaults.lostChanges()) << damaged;
        defaults.setString("dest", "/a");
        EXPECT_FALSE(defaults.lostChanges()) << damaged;
        EXPECT_EQ(IniUserDefaults(path).string("dest"), "/a") << damaged;
        EXPECT_TRUE(tree(folder.path()).at("a.conf").contains("\ndest=/a\n")) << damaged;
    }
}

TEST(IniUserDefaults, LetsNobodyElseReadTheFile) {
    const TemporaryFolder folder;
    const std::string path = folder.path("neu/a.conf");
    IniUserDefaults defaults(path);
    for (const auto* text : {"eins", "zwei"}) {
        defaults.setString("dest", text);
        struct stat status{};
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600U);
    }
}

TEST(IniUserDefaults, FollowsALinkToTheFile) {
    const TemporaryFolder folder;
    folder.write("dotfiles/a.conf", "[General]\ndest=/a\n");
    std::filesystem::create_symlink("dotfiles/a.conf", folder.path("a.conf"));
    IniUserDefaults defaults(folder.path("a.conf"));
    defaults.setString("dest", "/b");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("a.conf")));
    EXPECT_EQ(tree(folder.path()).at("dotfiles/a.conf"), "[General]\ndest=/b\n");
}

TEST(IniUserDefaults, KeepsAChangeToItselfWhereItCannotWrite) {
    for (const std::string text : {"[General]\ndest=/a\n", "Kaputt\n[General]\ndest=/a\n"}) {
        const TemporaryFolder folder;
        const std::string path = folder.write("a.conf", text);
        std::filesystem::permissions(path, std::filesystem::perms(0444));
        std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
        runAsOrdinaryUser([&] {
            IniUserDefaults defaults(path);
            EXPECT_EQ(defaults.string("dest"), "/a");
            EXPECT_FALSE(defaults.lostChanges());
            defaults.setString("dest", "/b");
            EXPECT_EQ(defaults.string("dest"), "/b");
            EXPECT_TRUE(defaults.lostChanges());
        });
        EXPECT_EQ(tree(folder.path()).at("a.conf"), text);
    }
}

TEST(IniUserDefaults, KeepsWhatTwoProcessesWriteAtOnce) {
    const TemporaryFolder folder = fastFolder();
    const std::string path = folder.path("a.conf");
    ChildProcess first([&] { return keepsAll(path, "first", 1000); });
    ChildProcess second([&] { return keepsAll(path, "second", 1000); });
    EXPECT_TRUE(first.wentWell());
    EXPECT_TRUE(second.wentWell());
    const IniUserDefaults defaults(path);
    EXPECT_EQ(defaults.string("first"), numbered(1000));
    EXPECT_EQ(defaults.string("second"), numbered(1000));
}

TEST(IniUserDefaults, SeesWhatAnotherProcessHasJustWritten) {
    const TemporaryFolder folder = fastFolder();
    const std::string path = folder.path("a.conf");
    const LinePipe firstsTurn;
    const LinePipe secondsTurn;
    ChildProcess first(
        [&] { return keepsAllInTurns(path, "first", "second", firstsTurn, secondsTurn); });
    ChildProcess second(
        [&] { return keepsAllInTurns(path, "second", "first", secondsTurn, firstsTurn); });
    firstsTurn.write("");
    EXPECT_TRUE(first.wentWell());
    EXPECT_TRUE(second.wentWell());
}

TEST(IniUserDefaults, LivesInTheFolderForConfiguration) {
    const TemporaryFolder folder;
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", folder.path());
    EXPECT_EQ(IniUserDefaults::standardPath(), folder.path("bildkurier/bildkurier.conf"));
    IniUserDefaults defaults;
    defaults.setBoolean("byDate", true);
    EXPECT_EQ(tree(folder.path("bildkurier")),
              (Tree{{"bildkurier.conf", "[General]\nbyDate=true\n"}}));
}

}  // namespace

}  // namespace bildkurier
