// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <span>

namespace bildkurier {
namespace {

using Calls = std::span<const LoggedCall>;

bool isOneOf(const std::string& name, const std::set<std::string>& names) {
    return names.contains(name);
}

bool flushes(const LoggedCall& call, const std::string& path) {
    return isOneOf(call.name, {"fsync", "fdatasync"}) && call.path == path && call.result == 0;
}

bool changes(const LoggedCall& call, const std::string& path) {
    return isOneOf(call.name, {"write", "pwrite", "writev", "ftruncate", "copy_file_range",
                               "sendfile", "fallocate"}) &&
           call.path == path;
}

bool givesAName(const LoggedCall& call) {
    return isOneOf(call.name, {"rename", "renameat", "renameat2", "link", "linkat"}) &&
           call.result == 0;
}

bool makesAFolder(const LoggedCall& call) {
    return isOneOf(call.name, {"mkdir", "mkdirat"}) && call.result == 0;
}

std::string folderOf(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

/// Whether the contents of `path` are flushed after the last change to them.
bool isFlushedAtTheEndOf(Calls calls, const std::string& path) {
    bool flushed = false;
    for (const auto& call : calls) {
        if (changes(call, path)) flushed = false;
        if (flushes(call, path)) flushed = true;
    }
    return flushed;
}

/// Whether `path` is flushed before another file gets its name.
bool isFlushedBeforeTheNextName(Calls calls, const std::string& path) {
    const auto next = std::ranges::find_if(calls, givesAName);
    return std::any_of(calls.begin(), next,
                       [&path](const LoggedCall& call) { return flushes(call, path); });
}

class FlushOrderTest : public ProgramTest {
protected:
    void SetUp() override {
        needFaults();
        for (const std::string name : {"IMG_1.JPG", "IMG_2.CR3", "IMG_3.JPG", "MVI_4.MP4"}) {
            addLarge(name, 3'000'000);
        }
    }

    /// All that happens in the folder round card and destination.
    std::vector<LoggedCall> calls() const {
        const std::string log = folder.path("calls.log");
        const auto result = import({"--by-date"}, watching(folder.path(), log));
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        return readCallLog(log);
    }
};

TEST_F(FlushOrderTest, EveryFileIsFlushedBeforeItGetsItsNameAndItsFolderAfterwards) {
    const auto all = calls();
    std::set<std::string> named;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto& call = all[i];
        if (!givesAName(call)) continue;
        EXPECT_TRUE(isFlushedAtTheEndOf(Calls(all).first(i), call.path)) << call.path;
        EXPECT_TRUE(
            isFlushedBeforeTheNextName(Calls(all).subspan(i + 1), folderOf(call.secondPath)))
            << call.secondPath;
        named.insert(call.secondPath);
    }
    std::set<std::string> files;
    for (const auto& [path, bytes] : tree(destination)) {
        if (!path.ends_with('/')) files.insert(destination + "/" + path);
    }
    EXPECT_EQ(files.size(), 4U);
    EXPECT_EQ(named, files);
}

TEST_F(FlushOrderTest, TheFolderAboveEveryNewFolderIsFlushedBeforeAFileGetsItsName) {
    const auto all = calls();
    std::set<std::string> made;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!makesAFolder(all[i])) continue;
        EXPECT_TRUE(isFlushedBeforeTheNextName(Calls(all).subspan(i + 1), folderOf(all[i].path)))
            << all[i].path;
        made.insert(all[i].path);
    }
    // The destination, the staging folder, a day, and three types.
    EXPECT_EQ(made.size(), 6U);
}

}  // namespace
}  // namespace bildkurier
