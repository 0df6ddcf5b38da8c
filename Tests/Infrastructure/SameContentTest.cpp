// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SameContent.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

class SameContentTest : public testing::Test {
protected:
    PlacedFile place(const std::string& name, const std::string& contents) {
        folder.write(name, contents);
        return {.folder = folder.url(), .path = name};
    }

    static void expectChanged(const Result<bool>& result, const std::string& side) {
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().message, "hat sich " + side + " während der Prüfung verändert");
    }

    Result<bool> compare(const PlacedFile& one, const PlacedFile& other, std::size_t size) {
        told = 0;
        return haveSameContent(one, other, static_cast<std::int64_t>(size),
                               [this](std::int64_t bytes) {
                                   told += bytes;
                                   return true;
                               });
    }

    /// Bytes that this process has had read from media so far.
    static std::int64_t bytesFromMedia() {
        std::ifstream counts("/proc/self/io");
        std::string word;
        while (counts >> word && word != "read_bytes:") continue;
        std::int64_t bytes = 0;
        counts >> bytes;
        return bytes;
    }

    TemporaryFolder folder;
    std::int64_t told = 0;
};

std::string bytes(std::size_t size) {
    std::minstd_rand random(static_cast<unsigned>(size));
    std::string made(size, '\0');
    std::ranges::generate(made, [&] { return static_cast<char>(random() >> 8U); });
    return made;
}

TEST_F(SameContentTest, ComparesEveryByte) {
    for (const std::size_t size : {0UL, 1UL, 4095UL, 4096UL, 4097UL, (1UL << 20U) - 1, 1UL << 20U,
                                   (1UL << 20U) + 1, 3'000'001UL}) {
        const std::string contents = bytes(size);
        const auto one = place("one", contents);
        EXPECT_EQ(compare(one, place("other", contents), size), true) << size;
        EXPECT_EQ(told, static_cast<std::int64_t>(size));
        for (const std::size_t at : {std::size_t{0}, size / 2, size - 1}) {
            if (size == 0) break;
            std::string changed = contents;
            changed[at] = static_cast<char>(changed[at] ^ 1);
            EXPECT_EQ(compare(one, place("other", changed), size), false) << size << " " << at;
        }
    }
}

TEST_F(SameContentTest, FailsWhereAFileHasChangedSinceItWasListed) {
    const auto one = place("one", "abc");
    const auto longer = place("longer", "abcd");
    expectChanged(compare(one, longer, 3), "am Ziel");
    expectChanged(compare(longer, one, 3), "auf der Karte");
    expectChanged(compare(longer, longer, 3), "auf der Karte");
    expectChanged(compare(one, one, 4), "auf der Karte");
}

TEST_F(SameContentTest, FailsWhereAFileBecomesShorterMeanwhile) {
    const std::string contents = bytes(5'000'000);
    const struct {
        const char* file;
        const char* side;
    } cases[] = {{"card", "auf der Karte"}, {"destination", "am Ziel"}};
    for (const auto& [file, side] : cases) {
        const auto card = place("card", contents);
        const auto destination = place("destination", contents);
        expectChanged(haveSameContent(card, destination, 5'000'000,
                                      [&](std::int64_t) {
                                          fs::resize_file(folder.path(file), 2'500'000);
                                          return true;
                                      }),
                      side);
    }
}

TEST_F(SameContentTest, FailsWhereAFileCannotBeRead) {
    const auto one = place("one", "abc");
    folder.makeFolder("folder");
    fs::create_symlink(folder.path("one"), folder.path("link"));
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    const Url root = folder.url();
    for (const std::string name : {"none", "link", "folder", "fifo", "one/x"}) {
        const PlacedFile odd{.folder = root, .path = name};
        ASSERT_FALSE(compare(one, odd, 3)) << name;
        EXPECT_TRUE(compare(one, odd, 3).error().message.starts_with("am Ziel ")) << name;
        EXPECT_TRUE(compare(odd, one, 3).error().message.starts_with("auf der Karte ")) << name;
    }
    EXPECT_FALSE(compare(one, {.folder = Url::file("/nowhere"), .path = "one"}, 3));
}

TEST_F(SameContentTest, StopsWhenTold) {
    const std::string contents = bytes(5'000'000);
    const auto one = place("one", contents);
    int steps = 0;
    const auto result = haveSameContent(one, place("other", contents), 5'000'000,
                                        [&](std::int64_t) { return ++steps < 2; });
    EXPECT_FALSE(result);
    EXPECT_EQ(steps, 2);
}

TEST_F(SameContentTest, ReadsBothFilesFromTheMedium) {
    struct statfs volume{};
    ASSERT_EQ(::statfs(folder.path().c_str(), &volume), 0);
    constexpr auto tmpfs = 0x01021994;
    if (volume.f_type == tmpfs) GTEST_SKIP() << "tmpfs has nothing but a cache";
    const std::string contents = bytes(2'000'000);
    const auto one = place("one", contents);
    const auto other = place("other", contents);
    // Freshly written, they are in the cache.
    for (int round = 0; round < 2; ++round) {
        const auto before = bytesFromMedia();
        EXPECT_EQ(compare(one, other, contents.size()), true);
        EXPECT_GE(bytesFromMedia() - before, 4'000'000);
    }
}

}  // namespace
}  // namespace bildkurier
