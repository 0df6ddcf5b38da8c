// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "MarkedFolder.h"
#include "PrivateMounts.h"
#include "SameContent.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
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
        std::ofstream(root + "/" + name, std::ios::binary) << contents;
        return {.folder = Url::file(root), .path = name};
    }

    /// One that has to lie where it lies now.
    PlacedFile marked(const std::string& in, const std::string& name) const {
        const std::string path = folder.path(in);
        return {.folder = Url::file(path), .path = name, .mark = markOf(openFolder(path, O_PATH))};
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

    void expectEveryByteCompared();

    bool isInMemory() const {
        struct statfs volume{};
        EXPECT_EQ(::statfs(folder.path().c_str(), &volume), 0);
        constexpr auto tmpfs = 0x01021994;
        return volume.f_type == tmpfs;
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
    std::string root = folder.path();
    std::int64_t told = 0;
};

std::string bytes(std::size_t size) {
    std::minstd_rand random(static_cast<unsigned>(size));
    std::string made(size, '\0');
    std::ranges::generate(made, [&] { return static_cast<char>(random() >> 8U); });
    return made;
}

void SameContentTest::expectEveryByteCompared() {
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

TEST_F(SameContentTest, ComparesEveryByte) { expectEveryByteCompared(); }

TEST_F(SameContentTest, ComparesEveryByteInMemory) {
    const TemporaryVolume volume(10'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    root = volume.path();
    expectEveryByteCompared();
}

TEST_F(SameContentTest, ComparesEveryByteOfAFileSystemInUserSpace) {
    if (!mountPrivately()) GTEST_SKIP() << "mounting takes root";
    root = folder.makeFolder("card");
    const CardLikeVolume volume(root, folder.makeFolder("backing"));
    if (!volume.isMounted()) GTEST_SKIP() << "takes file systems in user space";
    expectEveryByteCompared();
}

TEST_F(SameContentTest, ComparesEveryByteWhereTheCacheCannotBePassed) {
    const struct {
        int call;
        const char* refused;
    } cases[] = {{SYS_openat, "opening"}, {SYS_pread64, "reading"}};
    for (const auto& [call, refused] : cases) {
        int refusals = 0;
        // Of others than those that go through the cache.
        const auto refuse = [&](const seccomp_data& asked) {
            const auto flags = call == SYS_openat
                                   ? static_cast<int>(asked.args[2])
                                   : ::fcntl(static_cast<int>(asked.args[0]), F_GETFL);
            if ((flags & O_DIRECT) == 0) return 0;
            ++refusals;
            return EINVAL;
        };
        const bool ran = runFiltered({call}, refuse, [this] { expectEveryByteCompared(); });
        if (!ran) GTEST_SKIP() << "the kernel lets no calls be watched";
        EXPECT_GT(refusals, 0) << refused;
        EXPECT_FALSE(HasFailure()) << refused;
    }
}

TEST_F(SameContentTest, ReadsFromTheMediumWhereTheCacheCannotBePassed) {
    if (isInMemory()) GTEST_SKIP() << "tmpfs has nothing but a cache";
    const std::string contents = bytes(2'000'000);
    const auto one = place("one", contents);
    const auto other = place("other", contents);
    const auto refuse = [](const seccomp_data& asked) {
        return (static_cast<int>(asked.args[2]) & O_DIRECT) != 0 ? EINVAL : 0;
    };
    const bool ran = runFiltered({SYS_openat}, refuse, [&] {
        for (int round = 0; round < 2; ++round) {
            const auto before = bytesFromMedia();
            EXPECT_EQ(compare(one, other, contents.size()), true);
            EXPECT_GE(bytesFromMedia() - before, 4'000'000);
        }
    });
    if (!ran) GTEST_SKIP() << "the kernel lets no calls be watched";
}

TEST_F(SameContentTest, ReadsNoOtherFolderInPlaceOfTheOneThatIsMeant) {
    for (const std::string each : {"card", "other card", "destination"})
        folder.write(each + "/one", "abc");
    const auto card = marked("card", "one");
    const auto destination = marked("destination", "one");
    EXPECT_EQ(compare(card, destination, 3), true);
    fs::rename(folder.path("card"), folder.path("lost card"));
    fs::rename(folder.path("other card"), folder.path("card"));
    const std::string exchanged =
        " nicht lesbar: Die Datei oder der Ordner wurde unterwegs ausgetauscht";
    const auto asCard = compare(card, destination, 3);
    const auto asDestination = compare(destination, card, 3);
    ASSERT_TRUE(!asCard && !asDestination);
    EXPECT_EQ(asCard.error().message, "auf der Karte" + exchanged);
    EXPECT_EQ(asDestination.error().message, "am Ziel" + exchanged);
}

TEST_F(SameContentTest, ReadsNoOtherVolumeInPlaceOfTheOneThatIsMeant) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    volume.write("one", "abc");
    const PlacedFile card{
        .folder = volume.url(""), .path = "one", .mark = markOf(openFolder(volume.path(), O_PATH))};
    const auto other = place("other", "abc");
    EXPECT_EQ(compare(card, other, 3), true);
    ASSERT_EQ(::mount("tmpfs", volume.path().c_str(), "tmpfs", 0, ""), 0);
    volume.write("one", "abc");
    const auto compared = compare(card, other, 3);
    ASSERT_EQ(::umount(volume.path().c_str()), 0);
    ASSERT_FALSE(compared);
    EXPECT_EQ(compared.error().message, "auf der Karte nicht lesbar: Das Gerät ist nicht mehr da");
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
    for (const std::string name : {"none", "link", "folder", "fifo", "one/x"}) {
        const PlacedFile odd{.folder = folder.url(), .path = name};
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
    if (isInMemory()) GTEST_SKIP() << "tmpfs has nothing but a cache";
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
