// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LoggedCall.h"
#include "ProgramCall.h"
#include "RunningProgram.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {
namespace {

/// What the probe says when nothing goes wrong.
const std::string undisturbed =
    "mkdirat 0\nwrite 10\nwritev 7\nfsync 0\nfstat 0\nclose 0\nclosed EBADF\nrenameat2 0\n"
    "stat 0\nunlinkat 0\nunlinkat 0\nelsewhere 1\ninterrupts 0\n";

/// Runs the probe in a folder of its own with the library preloaded.
class FaultsTest : public testing::Test {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "nothing can be preloaded into a program with a sanitizer";
#endif
    }

    ProgramCall call(std::map<std::string, std::string> environment) const {
        environment.insert(
            {{"LD_PRELOAD", FAULTS_LIBRARY}, {"FAULTS_ROOT", root}, {"FAULTS_LOG", logFile}});
        return {.path = FAULTS_PROBE, .arguments = {root}, .environment = environment};
    }
    ProgramResult probe(std::map<std::string, std::string> environment = {}) const {
        return call(std::move(environment)).run();
    }

    std::vector<LoggedCall> log() const { return readCallLog(logFile); }

    const TemporaryFolder folder;
    const std::string root = std::filesystem::canonical(folder.makeFolder("root")).string();
    const std::string logFile = folder.path("log");
};

/// `said` with the answer of one call exchanged.
std::string with(std::string said, const std::string& before, const std::string& after) {
    return said.replace(said.find(before), before.size(), after);
}

TEST_F(FaultsTest, LogsEveryCallThatTouchesTheRoot) {
    const auto result = probe();
    EXPECT_EQ(result.out, undisturbed);
    const std::vector<LoggedCall> calls = log();
    ASSERT_EQ(calls.size(), 13U);
    const std::vector<std::string> names = {"open",     "mkdirat",  "openat", "write",     "writev",
                                            "fsync",    "fstat",    "close",  "renameat2", "stat",
                                            "unlinkat", "unlinkat", "close"};
    for (std::size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].number, static_cast<long>(i + 1));
        EXPECT_EQ(calls[i].name, names[i]);
        EXPECT_EQ(calls[i].error, 0) << calls[i].name;
        EXPECT_EQ(calls[i].fault, "") << calls[i].name;
    }
    EXPECT_EQ(calls[0].path, root);
    EXPECT_EQ(calls[3].path, root + "/new/a");
    EXPECT_EQ(calls[3].result, 10);
    EXPECT_EQ(calls[8].path, root + "/new/a");
    EXPECT_EQ(calls[8].secondPath, root + "/b");
}

TEST_F(FaultsTest, LeavesAProgramAloneThatTouchesSomethingElse) {
    const std::string beside = root + "-beside";
    std::filesystem::create_directory(beside);
    const auto result = probe({{"FAULTS_ROOT", beside}, {"FAULTS_KILL_AT", "1"}});
    EXPECT_EQ(result.out, undisturbed);
    EXPECT_EQ(log(), std::vector<LoggedCall>());
}

TEST_F(FaultsTest, FailsOneCall) {
    const auto result = probe({{"FAULTS_FAIL_AT", "6"}, {"FAULTS_ERRNO", "EIO"}});
    EXPECT_EQ(result.out, with(undisturbed, "fsync 0", "fsync EIO"));
    const LoggedCall failed = log().at(5);
    EXPECT_EQ(failed.name, "fsync");
    EXPECT_EQ(failed.result, -1);
    EXPECT_EQ(failed.error, EIO);
    EXPECT_EQ(failed.fault, "failed");
}

TEST_F(FaultsTest, FailsFromOneCallOnThoseThatCanFailSo) {
    const auto full =
        probe({{"FAULTS_FAIL_AT", "4"}, {"FAULTS_ERRNO", "ENOSPC"}, {"FAULTS_MODE", "forever"}});
    EXPECT_EQ(full.out,
              "mkdirat 0\nwrite ENOSPC\nwritev ENOSPC\nfsync ENOSPC\nfstat 0\nclose ENOSPC\n"
              "closed EBADF\nrenameat2 ENOSPC\nstat ENOENT\nunlinkat ENOENT\n"
              "unlinkat ENOTEMPTY\nelsewhere 1\ninterrupts 0\n");
}

TEST_F(FaultsTest, RefusesOnlyWhatIsReachedByAPath) {
    const auto refused =
        probe({{"FAULTS_FAIL_AT", "4"}, {"FAULTS_ERRNO", "EACCES"}, {"FAULTS_MODE", "forever"}});
    EXPECT_EQ(refused.out,
              "mkdirat 0\nwrite 10\nwritev 7\nfsync 0\nfstat 0\nclose 0\nclosed EBADF\n"
              "renameat2 EACCES\nstat EACCES\nunlinkat EACCES\nunlinkat EACCES\n"
              "elsewhere 1\ninterrupts 0\n");
}

TEST_F(FaultsTest, ClosesADescriptorWhoseCloseFails) {
    const auto result = probe({{"FAULTS_FAIL_AT", "8"}, {"FAULTS_ERRNO", "EIO"}});
    EXPECT_EQ(result.out, with(undisturbed, "close 0", "close EIO"));
}

TEST_F(FaultsTest, WritesHalf) {
    const auto once = probe({{"FAULTS_FAIL_AT", "4"}, {"FAULTS_ERRNO", "SHORT"}});
    EXPECT_EQ(once.out, with(undisturbed, "write 10", "write 5"));
    EXPECT_EQ(log().at(3).fault, "halved");
    const auto forever =
        probe({{"FAULTS_FAIL_AT", "4"}, {"FAULTS_ERRNO", "SHORT"}, {"FAULTS_MODE", "forever"}});
    EXPECT_EQ(forever.out, with(with(undisturbed, "write 10", "write 5"), "writev 7", "writev 3"));
}

TEST_F(FaultsTest, KillsBeforeDuringOrAfterACall) {
    const struct {
        std::string time;
        Tree left;
    } cases[] = {{"before", {{"new/", ""}, {"new/a", ""}}},
                 {"during", {{"new/", ""}, {"new/a", "01234"}}},
                 {"after", {{"new/", ""}, {"new/a", "0123456789"}}}};
    for (const auto& [time, left] : cases) {
        const auto result = probe({{"FAULTS_KILL_AT", "4"}, {"FAULTS_KILL", time}});
        EXPECT_EQ(result.signal, SIGKILL) << time;
        EXPECT_EQ(tree(root), left) << time;
        std::filesystem::remove_all(root + "/new");
    }
}

TEST_F(FaultsTest, StopsBeforeACallUntilToldToGoOn) {
    RunningProgram program(call({{"FAULTS_STOP_AT", "4"}}));
    ASSERT_TRUE(program.waitUntilStopped());
    EXPECT_EQ(tree(root), (Tree{{"new/", ""}, {"new/a", ""}}));
    program.send(SIGCONT);
    const auto result = program.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.out, undisturbed);
    EXPECT_EQ(log().size(), 13U);
}

TEST_F(FaultsTest, InterruptsTwice) {
    EXPECT_EQ(probe({{"FAULTS_SIGINT_AT", "4"}}).out,
              with(undisturbed, "interrupts 0", "interrupts 1"));
    EXPECT_EQ(probe({{"FAULTS_SIGINT_AT", "4,9"}}).out,
              with(undisturbed, "interrupts 0", "interrupts 2"));
}

}  // namespace
}  // namespace bildkurier
