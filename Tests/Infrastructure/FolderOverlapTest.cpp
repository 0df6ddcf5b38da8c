// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderOverlap.h"
#include "PrivateMounts.h"
#include "ProgramCall.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace bildkurier {
namespace {

TEST(FolderOverlap, IsThatOfFoldersWhichLieInOneAnother) {
    const TemporaryFolder folder;
    folder.makeFolder("card/DCIM");
    folder.makeFolder("card2");
    std::filesystem::create_directory_symlink(folder.path("card"), folder.path("link"));
    const struct {
        std::string one;
        std::string other;
        bool overlap;
    } cases[] = {
        {"card", "card", true},           {"card", "card/import", true},
        {"card/DCIM", "card", true},      {"link", "card/DCIM", true},
        {"link/not/yet", "card", true},   {"card/", "card", true},
        {"card", "card2", false},         {"card2", "card", false},
        {"link/../card2", "card", false}, {"card/DCIM", "card/MISC", false},
    };
    for (const auto& [one, other, overlap] : cases) {
        EXPECT_EQ(foldersOverlap(folder.path(one), folder.path(other)), overlap)
            << one << " " << other;
    }
    EXPECT_TRUE(foldersOverlap("/", folder.path("card")));
}

TEST(FolderOverlap, IsSeenThroughOtherMounts) {
    const auto table = parseMountTable(
        "20 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
        "21 20 8:2 /@home /home rw - btrfs /dev/sda2 rw\n"
        "30 20 8:17 / /media/EOS rw - vfat /dev/sdb1 rw\n"
        "31 21 8:17 / /home/anna/bilder/karte rw - vfat /dev/sdb1 rw\n"
        "32 20 8:17 /DCIM /mnt/dcim rw - vfat /dev/sdb1 rw\n"
        "33 20 8:17 /MISC /mnt/misc rw - vfat /dev/sdb1 rw\n"
        "34 20 8:1 /srv/fotos /mnt/fotos rw - ext4 /dev/sda1 rw\n"
        "35 20 8:2 /@home/anna /mnt/anna rw - btrfs /dev/sda2 rw\n"
        "36 20 0:44 / /mnt/leer rw - tmpfs tmpfs rw\n"
        "37 20 0:45 / /mnt/leer rw - tmpfs tmpfs rw\n");
    ASSERT_EQ(table.size(), 10);
    const struct {
        std::string one;
        std::string other;
        bool overlap;
    } cases[] = {
        {"/media/EOS", "/home/anna/bilder", true},
        {"/media/EOS", "/home/anna/bilder/2026", false},
        {"/media/EOS", "/home/anna/bilder/karte/neu", true},
        {"/media/EOS/DCIM", "/home/anna/bilder/karte/neu", false},
        {"/media/EOS", "/mnt/dcim", true},
        {"/media/EOS", "/mnt/dcim/neu", true},
        {"/media/EOS/DCIM/100", "/mnt/dcim", true},
        {"/media/EOS/DCIM/100", "/mnt/dcim/101", false},
        {"/media/EOS/DCIM2", "/mnt/dcim", false},
        {"/media/EOS/MISC", "/mnt/dcim", false},
        {"/mnt/misc", "/mnt/dcim", false},
        {"/mnt", "/media/EOS", true},
        {"/srv/fotos/karte", "/mnt/fotos", true},
        {"/srv", "/mnt/fotos/neu", true},
        {"/srv/musik", "/mnt/fotos", false},
        {"/home/anna/karte", "/mnt/anna", true},
        {"/home/berta/karte", "/mnt/anna", false},
        {"/home/anna/karte", "/home/anna/bilder", false},
        {"/", "/mnt/leer", true},
        {"/mnt/leer", "/media/EOS", false},
    };
    for (const auto& [one, other, overlap] : cases) {
        EXPECT_EQ(shareVolume(table, one, other), overlap) << one << " " << other;
        EXPECT_EQ(shareVolume(table, other, one), overlap) << other << " " << one;
    }
    EXPECT_FALSE(shareVolume({}, "/media/EOS", "/home"));
}

TEST(FolderOverlap, IsSeenThroughRealMounts) {
    const TemporaryFolder folder;
    folder.makeFolder("card/DCIM/100");
    folder.makeFolder("card/MISC");
    folder.makeFolder("destination/sub");
    folder.makeFolder("bound");
    const auto overlap = [&](const std::string& one, const std::string& other) {
        return foldersOverlap(folder.path(one), folder.path(other));
    };
    EXPECT_FALSE(overlap("card", "bound"));
    EXPECT_FALSE(overlap("card", "destination"));
    const auto bind = [&](const std::string& what, const std::string& where) {
        return succeeds({"mount", "--bind", folder.path(what), folder.path(where)});
    };
    if (!mountPrivately() || !bind("card/DCIM", "bound") || !bind("card", "destination/sub"))
        GTEST_SKIP() << "Mounting takes root.";
    EXPECT_TRUE(overlap("card", "bound"));
    EXPECT_TRUE(overlap("bound/not/yet", "card"));
    EXPECT_TRUE(overlap("card/DCIM/100", "bound"));
    EXPECT_FALSE(overlap("card/MISC", "bound"));
    EXPECT_TRUE(overlap("card", "destination"));
    EXPECT_TRUE(overlap("card/MISC", "destination/sub"));
    EXPECT_FALSE(overlap("card", "destination/other"));
    EXPECT_TRUE(succeeds({"umount", folder.path("bound"), folder.path("destination/sub")}));
}

}  // namespace
}  // namespace bildkurier
