// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileSizeLimit.h"
#include "SystemCallFilter.h"
#include "SystemError.h"
#include "TemporaryFolder.h"
#include "Tree.h"
#include "WriterThread.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {
namespace {

constexpr std::size_t mostAtOnce = 2 << 20;

class WriterThreadTest : public testing::Test {
protected:
    TemporaryFolder folder;
    PartialFile file;

    void SetUp() override { ASSERT_TRUE(file.create(folder.path(), "IMG_1.JPG", false)); }

    /// Different wherever one looks.
    static std::string bytes(std::size_t count) {
        std::string made(count, '.');
        for (std::size_t at = 0; at < count; at += 16) {
            const std::string number = std::to_string(at);
            number.copy(made.data() + at, count - at);
        }
        return made;
    }

    /// Appends it in pieces that get longer; answers whether all was taken.
    static bool appendAll(WriterThread& writer, std::string_view all, std::size_t step = 1) {
        for (; !all.empty(); step *= 2) {
            if (!writer.append(all.substr(0, step))) return false;
            all.remove_prefix(std::min(all.size(), step));
        }
        return true;
    }

    std::string written() const { return tree(folder.path()).at("IMG_1.JPG"); }
};

TEST_F(WriterThreadTest, TakesAsMuchAsThereIsBehindALittle) {
    const std::string all = bytes(mostAtOnce + 5);
    WriterThread writer(file);
    EXPECT_TRUE(writer.append(std::string_view(all).substr(0, 5)));
    EXPECT_TRUE(writer.append(std::string_view(all).substr(5)));
    EXPECT_TRUE(writer.finish());
    EXPECT_TRUE(written() == all);
}

TEST_F(WriterThreadTest, WritesAllInOrder) {
    const std::string all = bytes(9'000'000);
    WriterThread writer(file);
    EXPECT_TRUE(appendAll(writer, all));
    EXPECT_TRUE(writer.finish());
    EXPECT_TRUE(written() == all);
    EXPECT_EQ(file.size(), std::ssize(all));
}

TEST_F(WriterThreadTest, WritesWhatIsTooLittleForAThread) {
    {
        WriterThread writer(file);
        EXPECT_TRUE(writer.append(std::string_view("abc")));
        EXPECT_TRUE(writer.finish());
    }
    EXPECT_EQ(written(), "abc");
    EXPECT_TRUE(WriterThread(file).finish());
    EXPECT_EQ(written(), "abc");
}

TEST_F(WriterThreadTest, DropsWhatNobodyFinishes) {
    EXPECT_TRUE(WriterThread(file).append(std::string_view("abc")));
    EXPECT_EQ(written(), "");
}

TEST_F(WriterThreadTest, SaysWhatTheDiskSaid) {
    const FileSizeLimit limit(100'000);
    const std::string all = bytes(4 * mostAtOnce);
    WriterThread writer(file);
    EXPECT_FALSE(appendAll(writer, all, 50'000));
    const auto outcome = writer.finish();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().message,
              "Die Datei lässt sich nicht speichern: " + systemError(EFBIG).message);
    EXPECT_EQ(written(), all.substr(0, 100'000));
}

TEST_F(WriterThreadTest, SaysAtTheEndWhatTheDiskSaidOfTheLastBytes) {
    const FileSizeLimit limit(100'000);
    WriterThread first(file);
    EXPECT_TRUE(first.append(bytes(100'000)));
    EXPECT_TRUE(first.finish());
    for (const std::size_t last : {1U, 100'000U}) {
        WriterThread writer(file);
        EXPECT_TRUE(writer.append(bytes(last)));
        EXPECT_FALSE(writer.finish()) << last;
    }
}

TEST_F(WriterThreadTest, WaitsForASlowDisk) {
    std::vector<std::size_t> writes;
    const auto rule = [&](const seccomp_data& call) {
        writes.push_back(call.args[2]);
        return 0;
    };
    const std::string all = bytes(4 * mostAtOnce);
    const auto write = [&] {
        WriterThread writer(file);
        for (std::size_t at = 0; at < all.size(); at += 100'000)
            EXPECT_TRUE(writer.append(std::string_view(all).substr(at, 100'000)));
        EXPECT_TRUE(writer.finish());
    };
    if (!runFiltered({SYS_write}, rule, write))
        GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_LE(std::ranges::max(writes), mostAtOnce);
    EXPECT_TRUE(written() == all);
}

TEST_F(WriterThreadTest, WritesByItselfWhereThereIsNoThread) {
    const std::string all = bytes(1'000'000);
    const auto refuse = [](const seccomp_data&) { return EAGAIN; };
    const auto write = [&] {
        WriterThread writer(file);
        EXPECT_TRUE(appendAll(writer, all));
        EXPECT_TRUE(writer.finish());
    };
    if (!runFiltered({SYS_clone, SYS_clone3}, refuse, write))
        GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_TRUE(written() == all);
}

}  // namespace
}  // namespace bildkurier
