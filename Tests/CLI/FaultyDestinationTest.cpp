// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <ostream>
#include <set>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// How the destination fails.
struct Fault {
    std::string error;
    std::string mode;
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << fault.error << " " << fault.mode;
}

const std::string oldPicture = "2024-07-01/JPG/IMG_3.JPG";
const std::string oldContents = "another picture";

/// Fails every call that a small import makes below its destination, one import per call.
class FaultyDestinationTest : public ProgramTest, public testing::WithParamInterface<Fault> {
protected:
    static constexpr auto layout = "--by-date";

    void SetUp() override {
        needFaults();
        for (const std::string name : {"IMG_1.JPG", "IMG_2.CR3", "IMG_3.JPG"}) {
            addLarge(name, 20'000);
        }
    }

    /// A destination where a file of other content has the name of one on the card.
    void prepare(const std::string& place) const {
        const fs::path path = fs::path(place) / oldPicture;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << oldContents;
    }

    /// Imports into the folder `below` of a place of its own, with call number `k` failing, and
    /// says what is wrong with what came of it. Any thread.
    std::string tryCall(long k, const std::string& below) const;

    /// Tries all calls, two at a time.
    void tryAllCalls(const std::string& below) const;
};

/// The card's name of a file that had to be saved as "NAME_1.EXT".
std::string nameOnCard(const std::string& saved, const Tree& wanted) {
    if (wanted.contains(saved)) return saved;
    const fs::path name = saved;
    const std::string base = name.stem().string();
    return base.substr(0, base.rfind('_')) + name.extension().string();
}

/// Whether contents or a name may be lost when this call fails.
bool isWeighty(const LoggedCall& call) {
    if (call.name == "close") return fs::path(call.path).has_extension();
    return std::set<std::string>{"write", "fsync", "renameat2"}.contains(call.name);
}

/// Whether staging may stay behind: for the call, or another like it, is one that clears it away.
bool keepsStaging(const LoggedCall& call) {
    return !call.fault.empty() &&
           std::set<std::string>{"unlinkat", "rmdir", "openat", "open"}.contains(call.name);
}

/// What is wrong with an import of `wanted` into the folder `below`; empty if nothing is.
std::string complaint(const ProgramResult& result, const Tree& found, const Tree& wanted,
                      const std::string& below, const std::vector<LoggedCall>& calls) {
    if (result.hung) return "it hangs";
    const ImportOutput output(result.out);
    const auto count = [](const auto& list) { return std::ssize(list); };

    const std::string staging = below + ".bildkurier-tmp/";
    const bool isStaged = std::ranges::any_of(
        found, [&](const auto& entry) { return entry.first.starts_with(staging); });
    if (isStaged && std::ranges::none_of(calls, keepsStaging)) return "staging was left behind";

    Tree files;
    for (const auto& [path, bytes] : found) {
        if (path.ends_with('/') || path.starts_with(staging)) continue;
        const std::string name = fs::path(path).filename().string();
        files[path] = bytes;
        if (path == oldPicture) continue;
        if (wanted.at(nameOnCard(name, wanted)) != bytes) return path + " is not whole";
    }
    if (files[oldPicture] != oldContents) return "the old picture is lost";
    const std::string day = below + "2024-07-01/";
    for (const auto& saved : output.saved) {
        if (!files.contains(day + saved)) return saved + " is said to be there";
    }

    switch (result.exitStatus) {
        case 0:
            if (count(output.failed) > 0) return "a file failed, but all is well";
            if (count(output.saved) != count(wanted)) return "not everything was loaded";
            if (!output.summary || output.summary->failed != 0) return "the summary is off";
            break;
        case 1:
            if (output.failed.empty()) return "no line tells what failed";
            if (!output.summary || output.summary->failed != count(output.failed) ||
                output.summary->loaded != count(output.saved)) {
                return "the summary does not count what the lines tell";
            }
            break;
        case 4:
            if (result.err.empty()) return "nothing tells why the destination is unusable";
            if (!output.saved.empty()) return "a file was loaded all the same";
            break;
        default:
            return "exit status " + std::to_string(result.exitStatus);
    }

    const bool harmed = std::ranges::any_of(
        calls, [](const LoggedCall& call) { return call.fault == "failed" && isWeighty(call); });
    if (harmed && result.exitStatus == 0) return "data may be lost, but all is well";
    const bool halved =
        std::ranges::any_of(calls, [](const LoggedCall& call) { return call.fault == "halved"; });
    if (halved && result.exitStatus != 0) return "the rest of a short write was not written";
    return "";
}

std::string FaultyDestinationTest::tryCall(long k, const std::string& below) const {
    const std::string place = folder.path("try-" + std::to_string(k));
    const std::string log = place + ".log";
    prepare(place);
    Environment environment = watching(place, log);
    environment["FAULTS_FAIL_AT"] = std::to_string(k);
    environment["FAULTS_ERRNO"] = GetParam().error;
    environment["FAULTS_MODE"] = GetParam().mode;
    const auto result =
        run({"import", "--card", card, "--to", place + "/" + below, layout}, environment);
    const auto calls = readCallLog(log);
    const auto wrong = complaint(result, tree(place), visibleFiles(tree(card)), below, calls);
    fs::remove_all(place);
    if (wrong.empty()) return "";
    const auto failed =
        std::ranges::find_if(calls, [](const LoggedCall& call) { return !call.fault.empty(); });
    const std::string what = failed == calls.end() ? "no call" : failed->name + " " + failed->path;
    return "call " + std::to_string(k) + " (" + what + "): " + wrong + "\n" + result.out +
           result.err;
}

void FaultyDestinationTest::tryAllCalls(const std::string& below) const {
    const std::string place = folder.path("undisturbed");
    const std::string log = place + ".log";
    prepare(place);
    const auto result =
        run({"import", "--card", card, "--to", place + "/" + below, layout}, watching(place, log));
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const long calls = std::ssize(readCallLog(log));
    ASSERT_GT(calls, 50);

    std::atomic<long> next = 1;
    const auto work = [&] {
        std::string wrong;
        for (long k = next++; k <= calls; k = next++) wrong += tryCall(k, below);
        return wrong;
    };
    auto first = std::async(std::launch::async, work);
    auto second = std::async(std::launch::async, work);
    EXPECT_EQ(first.get() + second.get(), "");
}

TEST_P(FaultyDestinationTest, GetsNoHalfFileAndNoLieWhateverFails) { tryAllCalls(""); }

TEST_P(FaultyDestinationTest, GetsNoneWhereItsFoldersAreNewEither) { tryAllCalls("new/folder/"); }

INSTANTIATE_TEST_SUITE_P(, FaultyDestinationTest,
                         testing::Values(Fault{"ENOSPC", "once"}, Fault{"ENOSPC", "forever"},
                                         Fault{"EIO", "once"}, Fault{"EIO", "forever"},
                                         Fault{"EACCES", "once"}, Fault{"EACCES", "forever"},
                                         Fault{"SHORT", "once"}, Fault{"SHORT", "forever"}),
                         [](const auto& test) { return test.param.error + test.param.mode; });

}  // namespace
}  // namespace bildkurier
