// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "ImportLock.h"
#include "LinePipe.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

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

TEST_F(ImportLockTest, IsHeldByOneAtATime) {
    ImportLock first(path());
    ImportLock second(path());
    EXPECT_TRUE(first.acquire());
    EXPECT_EQ(second.acquire(), taken);
    first.release();
    EXPECT_TRUE(second.acquire());
    EXPECT_EQ(first.acquire(), taken);
}

TEST_F(ImportLockTest, StaysHeldWhenAskedForAgain) {
    ImportLock lock(path());
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(ImportLock(path()).acquire(), taken);
    lock.release();
    lock.release();
    EXPECT_TRUE(ImportLock(path()).acquire());
}

TEST_F(ImportLockTest, EndsWithItsObject) {
    EXPECT_TRUE(ImportLock(path()).acquire());
    EXPECT_TRUE(ImportLock(path()).acquire());
}

TEST_F(ImportLockTest, KeepsOtherProcessesOutUntilItsOwnDies) {
    const LinePipe held;
    ChildProcess importing([&] {
        ImportLock lock(path());
        if (!lock.acquire()) return false;
        held.write("held");
        while (true) ::pause();
    });
    ASSERT_EQ(held.read(), "held");
    ImportLock mine(path());
    EXPECT_EQ(mine.acquire(), taken);
    importing.kill();
    EXPECT_TRUE(mine.acquire());
    EXPECT_TRUE(ChildProcess([&] { return ImportLock(path()).acquire() == taken; }).wentWell());
}

TEST_F(ImportLockTest, IsNotHandedOnToOtherPrograms) {
    ImportLock lock(path());
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
    EXPECT_TRUE(ImportLock(path()).acquire());
}

TEST_F(ImportLockTest, LeavesAnEmptyFileThatIsTheUsersAlone) {
    EXPECT_TRUE(ImportLock(path()).acquire());
    EXPECT_EQ(tree(folder().path("bildkurier")), (Tree{{"import.lock", ""}}));
    struct stat status{};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(ImportLockTest, FollowsNoLink) {
    folder().write("fremd", "unberührt");
    folder().makeFolder("bildkurier");
    std::filesystem::create_symlink("../fremd", path());
    EXPECT_EQ(ImportLock(path()).acquire(),
              Result<>(failure("Die Sperre „" + path() +
                               "“ lässt sich nicht anlegen: Im Pfad steht ein symbolischer Link, "
                               "dem nicht gefolgt wird.")));
    EXPECT_EQ(tree(folder().path()).at("fremd"), "unberührt");
}

TEST_F(ImportLockTest, SaysWhyItCannotBeMade) {
    folder().write("bildkurier", "eine Datei");
    EXPECT_EQ(ImportLock(path()).acquire(),
              Result<>(failure("Die Sperre „" + path() +
                               "“ lässt sich nicht anlegen: Im Pfad steht eine Datei, wo ein "
                               "Ordner sein müsste.")));
    EXPECT_EQ(ImportLock(folder().path("bildkurier/a\nb/import.lock")).acquire(),
              Result<>(failure("Die Sperre „" + folder().path("bildkurier/a␊b/import.lock") +
                               "“ lässt sich nicht anlegen: Im Pfad steht eine Datei, wo ein "
                               "Ordner sein müsste.")));
}

TEST_F(ImportLockTest, IsOnePerUser) {
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder().path());
    EXPECT_EQ(ImportLock::standardPath(), path());
    ImportLock lock;
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(ImportLock(path()).acquire(), taken);
}

}  // namespace

}  // namespace bildkurier
