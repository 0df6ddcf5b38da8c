// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "ImportLock.h"
#include "LinePipe.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace bildkurier {

namespace {

const Result<> taken = failure("Es läuft schon ein Import.");

class ImportLockTest : public testing::Test {
protected:
    const std::string& path() const { return path_; }
    const TemporaryFolder& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
    std::string path_ = folder_.path("bildkurier/import.lock");
};

using Paths = std::vector<std::string>;

TEST_F(ImportLockTest, IsHeldByOneAtATime) {
    ImportLock first({path()});
    ImportLock second({path()});
    EXPECT_TRUE(first.acquire());
    EXPECT_EQ(second.acquire(), taken);
    first.release();
    EXPECT_TRUE(second.acquire());
    EXPECT_EQ(first.acquire(), taken);
}

TEST_F(ImportLockTest, StaysHeldWhenAskedForAgain) {
    ImportLock lock({path()});
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(ImportLock({path()}).acquire(), taken);
    lock.release();
    lock.release();
    EXPECT_TRUE(ImportLock({path()}).acquire());
}

TEST_F(ImportLockTest, EndsWithItsObject) {
    EXPECT_TRUE(ImportLock({path()}).acquire());
    EXPECT_TRUE(ImportLock({path()}).acquire());
}

TEST_F(ImportLockTest, KeepsOtherProcessesOutUntilItsOwnDies) {
    const LinePipe held;
    ChildProcess importing([&] {
        ImportLock lock({path()});
        if (!lock.acquire()) return false;
        held.write("held");
        while (true) ::pause();
    });
    ASSERT_EQ(held.read(), "held");
    ImportLock mine({path()});
    EXPECT_EQ(mine.acquire(), taken);
    importing.kill();
    EXPECT_TRUE(mine.acquire());
    EXPECT_TRUE(ChildProcess([&] { return ImportLock({path()}).acquire() == taken; }).wentWell());
}

TEST_F(ImportLockTest, IsNotHandedOnToOtherPrograms) {
    ImportLock lock({path()});
    ASSERT_TRUE(lock.acquire());
    const LinePipe started;
    // The shell writes once it runs, and then waits for a line that never comes.
    const ChildProcess program([&] {
        ::dup2(started.writingEnd(), STDOUT_FILENO);
        ::execl("/bin/sh", "sh", "-c", "echo started; exec sleep 600", nullptr);
        return false;
    });
    ASSERT_EQ(started.read(), "started");
    lock.release();
    EXPECT_TRUE(ImportLock({path()}).acquire());
}

TEST_F(ImportLockTest, LeavesAnEmptyFileThatIsTheUsersAlone) {
    EXPECT_TRUE(ImportLock({path()}).acquire());
    EXPECT_EQ(tree(folder().path("bildkurier")), (Tree{{"import.lock", ""}}));
    struct stat status{};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(ImportLockTest, FollowsNoLink) {
    folder().write("fremd", "unberührt");
    folder().makeFolder("bildkurier");
    std::filesystem::create_symlink("../fremd", path());
    EXPECT_EQ(ImportLock({path()}).acquire(),
              Result<>(failure("Die Sperre „" + path() +
                               "“ lässt sich nicht anlegen: Im Pfad steht ein symbolischer Link, "
                               "dem nicht gefolgt wird.")));
    EXPECT_EQ(tree(folder().path()).at("fremd"), "unberührt");
}

TEST_F(ImportLockTest, SaysWhyItCannotBeMade) {
    folder().write("bildkurier", "eine Datei");
    EXPECT_EQ(ImportLock({path()}).acquire(),
              Result<>(failure("Die Sperre „" + path() +
                               "“ lässt sich nicht anlegen: Im Pfad steht eine Datei, wo ein "
                               "Ordner sein müsste.")));
    EXPECT_EQ(ImportLock({folder().path("bildkurier/a\nb/import.lock")}).acquire(),
              Result<>(failure("Die Sperre „" + folder().path("bildkurier/a␊b/import.lock") +
                               "“ lässt sich nicht anlegen: Im Pfad steht eine Datei, wo ein "
                               "Ordner sein müsste.")));
}

TEST_F(ImportLockTest, IsTakenWhereverAnotherHoldsOneOfItsPlaces) {
    const Paths both{folder().path("a/import.lock"), folder().path("b/import.lock")};
    for (const auto& place : both) {
        ImportLock other({place});
        ASSERT_TRUE(other.acquire());
        ImportLock lock(both);
        EXPECT_EQ(lock.acquire(), taken);
        const auto& free = both[place == both[0] ? 1 : 0];
        EXPECT_TRUE(ImportLock({free}).acquire()) << "nothing is kept";
        other.release();
        EXPECT_TRUE(lock.acquire());
        EXPECT_EQ(other.acquire(), taken);
    }
}

TEST_F(ImportLockTest, DoesWithoutAPlaceThatCannotBeUsed) {
    folder().write("voll", "eine Datei");
    for (const auto& paths : {Paths{folder().path("voll/import.lock"), path()},
                              Paths{path(), folder().path("voll/import.lock")}}) {
        ImportLock lock(paths);
        EXPECT_TRUE(lock.acquire());
        EXPECT_EQ(ImportLock({path()}).acquire(), taken);
    }
}

TEST_F(ImportLockTest, IsOnePerUserWhateverTheSession) {
    const EnvironmentVariable caches("XDG_CACHE_HOME", folder().path("caches"));
    const auto pathsIn = [&](const std::string& session) {
        const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder().makeFolder(session));
        return ImportLock::standardPaths();
    };
    const std::string common = folder().path("caches/local.quarzfeld.bildkurier/import.lock");
    const auto service = pathsIn("service");
    const auto shell = pathsIn("shell");
    EXPECT_EQ(service, (Paths{folder().path("service/bildkurier/import.lock"), common}));
    EXPECT_EQ(shell, (Paths{folder().path("shell/bildkurier/import.lock"), common}));
    ImportLock lock(service);
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(ImportLock(shell).acquire(), taken);
}

/// Lays a table over the kernel's in which the volume of the caches is one of NFS.
TEST_F(ImportLockTest, KeepsAwayFromCachesOnAServer) {
    struct statx facts{};
    ASSERT_EQ(::statx(AT_FDCWD, folder().path().c_str(), 0, STATX_MNT_ID, &facts), 0);
    const std::string table = folder().write(
        "table", std::to_string(facts.stx_mnt_id) + " 1 0:9 / / rw - nfs4 nas:/home rw\n");
    const EnvironmentVariable caches("XDG_CACHE_HOME", folder().path("not/yet"));
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder().path());
    const std::string kernelTable = "/proc/" + std::to_string(::getpid()) + "/mountinfo";
    if (::mount(table.c_str(), kernelTable.c_str(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "cannot mount a file here";
    const auto paths = ImportLock::standardPaths();
    ASSERT_EQ(::umount2(kernelTable.c_str(), MNT_DETACH), 0);
    EXPECT_EQ(paths, Paths{path()});
    EXPECT_EQ(ImportLock::standardPaths().size(), 2);
}

}  // namespace

}  // namespace bildkurier
