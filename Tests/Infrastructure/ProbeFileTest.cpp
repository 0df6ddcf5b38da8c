// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProbeFile.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

const Tree oneProbe{{"probe", ""}};

TEST(ProbeFile, GoesWithTheLastWhoHasIt) {
    const TemporaryFolder folder;
    std::optional<ProbeFile> first(folder.path("probe"));
    std::optional<ProbeFile> second(folder.path("probe"));
    EXPECT_TRUE(*first && *second);
    EXPECT_EQ(tree(folder.path()), oneProbe);
    first.reset();
    EXPECT_EQ(tree(folder.path()), oneProbe);
    second.reset();
    EXPECT_EQ(tree(folder.path()), Tree{});
}

TEST(ProbeFile, EmptiesWhatACrashHasLeft) {
    const TemporaryFolder folder;
    folder.write("probe", "left");
    {
        const ProbeFile probe(folder.path("probe"));
        EXPECT_TRUE(probe);
        EXPECT_EQ(tree(folder.path()), oneProbe);
    }
    EXPECT_EQ(tree(folder.path()), Tree{});
}

TEST(ProbeFile, IsNoneWhereItCannotBeMade) {
    const TemporaryFolder folder;
    folder.write("file", "picture");
    std::filesystem::create_symlink(folder.path("file"), folder.path("link"));
    folder.makeFolder("folder");
    for (const std::string name : {"missing/probe", "file/probe", "folder", "link"})
        EXPECT_FALSE(ProbeFile(folder.path(name))) << name;
    EXPECT_EQ(tree(folder.path()).at("file"), "picture");
}

TEST(ProbeFile, NeedsNoLocks) {
    const TemporaryFolder folder;
    for (const int error : {ENOLCK, EOPNOTSUPP}) {
        const bool isFiltered = runFiltered(
            {SYS_flock}, [error](const auto&) { return error; },
            [&] {
                const ProbeFile probe(folder.path("probe"));
                EXPECT_TRUE(probe);
                EXPECT_EQ(tree(folder.path()), oneProbe);
            });
        if (!isFiltered) GTEST_SKIP() << "the kernel lets no calls be filtered";
        EXPECT_EQ(tree(folder.path()), Tree{});
    }
}

TEST(ProbeFile, IsThereForEveryoneAmongMany) {
    const TemporaryFolder folder;
    std::vector<std::jthread> threads;
    std::vector<int> seen(4);
    threads.reserve(seen.size());
    constexpr int rounds = 500;
    for (auto& count : seen) {
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                const ProbeFile probe(folder.path("probe"));
                if (std::filesystem::exists(probe.path())) ++count;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(seen, std::vector<int>(seen.size(), rounds));
    EXPECT_EQ(tree(folder.path()), Tree{});
}

}  // namespace
}  // namespace bildkurier
