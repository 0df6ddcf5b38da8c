// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "MarkedFolder.h"
#include "PrivateMounts.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>
#include <filesystem>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

class MarkedFolderTest : public testing::Test {
protected:
    static std::optional<FolderMark> markAt(const std::string& path) {
        return markOf(openFolder(path, O_PATH));
    }
    /// What opening fails with; 0 if it does not.
    static int errorOf(const std::string& path, const std::optional<FolderMark>& mark) {
        return openFolder(path, O_PATH, mark) ? 0 : errno;
    }

    TemporaryFolder folder;
    std::string card = folder.makeFolder("karte");
};

TEST_F(MarkedFolderTest, OpensTheFolderThatBearsTheMark) {
    const auto mark = markAt(card);
    ASSERT_TRUE(mark);
    EXPECT_NE(mark->folder, 0U);
    EXPECT_EQ(errorOf(card, mark), 0);
    EXPECT_EQ(errorOf(card, std::nullopt), 0);
    fs::create_directory_symlink(card, folder.path("link"));
    EXPECT_EQ(errorOf(folder.path("link"), mark), 0);
}

TEST_F(MarkedFolderTest, OpensNoOtherFolderInItsPlace) {
    const auto mark = markAt(card);
    fs::rename(card, folder.path("weg"));
    EXPECT_EQ(errorOf(card, mark), ENOENT);
    folder.makeFolder("karte");
    EXPECT_EQ(errorOf(card, mark), ESTALE);
    fs::remove(card);
    fs::rename(folder.path("weg"), card);
    EXPECT_EQ(errorOf(card, mark), 0);
}

TEST_F(MarkedFolderTest, OpensNoOtherVolumeInItsPlace) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    const auto mark = markAt(volume.path());
    const auto mountAgain = [&] {
        return ::mount("tmpfs", volume.path().c_str(), "tmpfs", 0, "") == 0;
    };
    ASSERT_TRUE(mountAgain());
    EXPECT_EQ(errorOf(volume.path(), mark), ENODEV);
    ASSERT_EQ(::umount(volume.path().c_str()), 0);
    EXPECT_EQ(errorOf(volume.path(), mark), 0);
    // The next one may get its device and the number of its folder.
    ASSERT_EQ(::umount(volume.path().c_str()), 0);
    ASSERT_TRUE(mountAgain());
    if (!mark->mount) GTEST_SKIP() << "the kernel has no lasting numbers of mounts";
    EXPECT_EQ(errorOf(volume.path(), mark), ENODEV);
}

TEST_F(MarkedFolderTest, DoesNotCountOnNumbersThatChange) {
    if (!mountPrivately()) GTEST_SKIP() << "mounting takes root";
    folder.makeFolder("backing/DCIM");
    const CardLikeVolume volume(card, folder.path("backing"));
    if (!volume.isMounted()) GTEST_SKIP() << "takes file systems in user space";
    const auto mark = markAt(card + "/DCIM");
    ASSERT_TRUE(mark);
    EXPECT_EQ(mark->folder, 0U);
    EXPECT_EQ(errorOf(card + "/DCIM", mark), 0);
}

TEST_F(MarkedFolderTest, HasNoMarkWhereNoFolderIs) {
    folder.write("datei", "x");
    for (const char* name : {"datei", "fehlt"}) {
        EXPECT_FALSE(openFolder(folder.path(name), O_PATH)) << name;
        EXPECT_EQ(markAt(folder.path(name)), std::nullopt) << name;
    }
}

}  // namespace
}  // namespace bildkurier
