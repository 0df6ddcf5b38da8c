// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CopyFile.h"
#include "FileSizeLimit.h"
#include "SystemCallFilter.h"
#include "SystemError.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <numeric>
#include <optional>
#include <utility>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t step = 4 << 20;

std::string someBytes(std::int64_t count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    std::iota(bytes.begin(), bytes.end(), '\1');
    for (std::size_t i = 0; i < bytes.size(); i += 4096) bytes[i] = static_cast<char>(i / 4096);
    return bytes;
}

class CopyFileTest : public testing::Test {
protected:
    TemporaryFolder card;
    TemporaryFolder target;
    std::string name = "IMG_1.JPG";
    int steps = 0;
    std::function<void()> onStep = [] {};
    std::optional<Error> whyStop;

    /// Writes the file on the card; its time is long ago.
    std::string write(const std::string& bytes) {
        const std::string path = card.write("source", bytes);
        const std::array<std::timespec, 2> times{
            {{.tv_sec = 1'700'000'000, .tv_nsec = 123'456'789},
             {.tv_sec = 1'700'000'001, .tv_nsec = 987'654'321}}};
        EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
        return path;
    }

    Result<> copy(std::int64_t size, bool overwrite = true, int flags = O_RDONLY) {
        const FileDescriptor source(::open(card.path("source").c_str(), flags | O_CLOEXEC));
        return copyFile(source, size,
                        {.directory = target.path(), .saveAs = name, .overwrite = overwrite}, [&] {
                            ++steps;
                            onStep();
                            return whyStop;
                        });
    }

    std::string message(const Result<>& result) { return result ? "" : result.error().message; }
    /// Before it is made, too.
    std::int64_t copied() {
        std::error_code missing;
        const auto size = fs::file_size(target.path(name), missing);
        return missing ? 0 : static_cast<std::int64_t>(size);
    }
    Tree copies() { return tree(target.path()); }
};

TEST_F(CopyFileTest, CopiesEveryByte) {
    for (const std::int64_t size :
         {std::int64_t{0}, std::int64_t{1}, step - 1, step, step + 1, 3 * step}) {
        const std::string bytes = someBytes(size);
        write(bytes);
        EXPECT_EQ(message(copy(size)), "");
        EXPECT_EQ(copies(), (Tree{{name, bytes}})) << size;
    }
}

TEST_F(CopyFileTest, KeepsTheModificationTimeToTheNanosecond) {
    write("abc");
    ASSERT_TRUE(copy(3));
    struct stat found{};
    ASSERT_EQ(::stat(target.path(name).c_str(), &found), 0);
    EXPECT_EQ(found.st_mtim.tv_sec, 1'700'000'001);
    EXPECT_EQ(found.st_mtim.tv_nsec, 987'654'321);
}

TEST_F(CopyFileTest, LetsTheCopyGrowStepByStep) {
    write(someBytes(3 * step + 5));
    std::vector<std::int64_t> sizes;
    onStep = [&] { sizes.push_back(copied()); };
    ASSERT_TRUE(copy(3 * step + 5));
    EXPECT_EQ(sizes, (std::vector<std::int64_t>{0, 0, step, 2 * step, 3 * step, 3 * step + 5}));
}

TEST_F(CopyFileTest, StopsWhenToldAndLeavesNothing) {
    write(someBytes(3 * step));
    onStep = [&] {
        if (copied() == 2 * step) whyStop = Error{"Genug"};
    };
    EXPECT_EQ(message(copy(3 * step)), "Genug");
    EXPECT_EQ(steps, 4);
    EXPECT_TRUE(copies().empty());
}

TEST_F(CopyFileTest, TouchesNothingOfANameThatIsAnothersByNow) {
    write(someBytes(2 * step));
    for (const int begun : {1, 2, 3}) {
        target.write(name, "a copy that the next import replaces");
        whyStop.reset();
        steps = 0;
        onStep = [&] {
            if (steps != begun) return;
            whyStop = Error{"Genug"};
            fs::remove(target.path(name));
            target.write(name, "of the next import");
        };
        EXPECT_EQ(message(copy(2 * step)), "Genug");
        EXPECT_EQ(copies(), (Tree{{name, "of the next import"}})) << begun;
    }
}

TEST_F(CopyFileTest, RefusesAFileThatIsNotAsLongAsTheCatalogueSays) {
    write("12345");
    EXPECT_EQ(message(copy(6)),
              "Die Datei ist auf der Karte kürzer als angegeben (5 statt 6 Bytes)");
    EXPECT_EQ(message(copy(4)), "Die Datei ist auf der Karte länger als die angegebenen 4 Bytes");
    EXPECT_EQ(message(copy(0)), "Die Datei ist auf der Karte länger als die angegebenen 0 Bytes");
    EXPECT_TRUE(copies().empty());
    EXPECT_EQ(steps, 0);
}

TEST_F(CopyFileTest, NoticesAFileThatShrinks) {
    const std::string path = write(someBytes(3 * step));
    onStep = [&] {
        if (steps == 3) fs::resize_file(path, step + 10);
    };
    EXPECT_EQ(message(copy(3 * step)),
              "Die Datei ist auf der Karte kürzer als angegeben (4194314 statt 12582912 Bytes)");
    EXPECT_TRUE(copies().empty());
}

TEST_F(CopyFileTest, NoticesAFileThatGrows) {
    const std::string path = write(someBytes(2 * step));
    onStep = [&] {
        if (steps == 4) fs::resize_file(path, 2 * step + 1);
    };
    EXPECT_EQ(message(copy(2 * step)),
              "Die Datei ist auf der Karte länger als die angegebenen 8388608 Bytes");
    EXPECT_TRUE(copies().empty());
}

TEST_F(CopyFileTest, NoticesAFileThatIsWrittenMeanwhile) {
    const std::string path = write(someBytes(2 * step));
    onStep = [&] {
        const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        EXPECT_EQ(::pwrite(file.get(), "x", 1, 0), 1);
    };
    EXPECT_EQ(message(copy(2 * step)),
              "Die Datei auf der Karte hat sich während des Ladens geändert");
    EXPECT_TRUE(copies().empty());
}

TEST_F(CopyFileTest, ReplacesAFileOnlyIfAsked) {
    write("new");
    target.write(name, "an older and longer one");
    EXPECT_EQ(message(copy(3, false)),
              "Die Datei lässt sich nicht speichern: Eine Datei oder ein "
              "Ordner dieses Namens existiert schon");
    EXPECT_EQ(copies(), (Tree{{name, "an older and longer one"}}));
    EXPECT_TRUE(copy(3, true));
    EXPECT_EQ(copies(), (Tree{{name, "new"}}));
}

TEST_F(CopyFileTest, NeverWritesThroughALink) {
    write("new");
    card.write("victim", "precious");
    fs::create_symlink(card.path("victim"), target.path(name));
    EXPECT_FALSE(copy(3, false));
    EXPECT_TRUE(copy(3, true));
    EXPECT_EQ(copies(), (Tree{{name, "new"}}));
    fs::remove(target.path(name));
    fs::create_hard_link(card.path("victim"), target.path(name));
    EXPECT_TRUE(copy(3, true));
    EXPECT_EQ(copies(), (Tree{{name, "new"}}));
    EXPECT_EQ(tree(card.path()).at("victim"), "precious");
}

TEST_F(CopyFileTest, LeavesAFolderInItsPlaceAlone) {
    write("new");
    target.write(name + "/inside", "precious");
    EXPECT_FALSE(copy(3));
    EXPECT_EQ(copies(), (Tree{{name + "/", ""}, {name + "/inside", "precious"}}));
}

TEST_F(CopyFileTest, RefusesANameThatIsNone) {
    write("abc");
    const std::vector<std::string> names = {"",   ".",    "..",   "a/b",
                                            "/a", "../a", "a\nb", std::string("a\0b", 3)};
    for (const std::string& bad : names) {
        name = bad;
        EXPECT_EQ(message(copy(3)), "Ungültiger Dateiname") << bad;
    }
    EXPECT_TRUE(copies().empty());
}

TEST_F(CopyFileTest, TakesANameThatIsNoText) {
    write("abc");
    name = "\xFF\xFE.JPG";
    EXPECT_TRUE(copy(3));
    EXPECT_EQ(copies(), (Tree{{name, "abc"}}));
}

TEST_F(CopyFileTest, SaysWhyItCannotWrite) {
    write(someBytes(2 * step));
    {
        const FileSizeLimit limit(step + 10);
        EXPECT_EQ(message(copy(2 * step)),
                  "Die Datei lässt sich nicht speichern: Die Datei ist "
                  "für das Volume zu groß");
    }
    EXPECT_TRUE(copies().empty());
    fs::remove(target.path());
    EXPECT_EQ(message(copy(2 * step)),
              "Die Datei lässt sich nicht speichern: Die Datei oder der "
              "Ordner ist nicht vorhanden");
}

TEST_F(CopyFileTest, OfALargeFileIsNotDoneBeforeTheDiskHasIt) {
    const std::string bytes = someBytes(step + 1);
    write(bytes);
    std::string answer;
    int code = EIO;
    std::vector<long> calls;
    const auto rule = [&](const seccomp_data& call) {
        calls.push_back(call.nr);
        return std::exchange(code, 0);
    };
    if (!runFiltered({SYS_fsync}, rule, [&] { answer = message(copy(step + 1)); }))
        GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_EQ(answer, "Die Datei lässt sich nicht speichern: " + systemError(EIO).message);
    EXPECT_TRUE(copies().empty());
    EXPECT_TRUE(runFiltered({SYS_fsync}, rule, [&] { answer = message(copy(step + 1)); }));
    EXPECT_EQ(answer, "");
    EXPECT_TRUE(copies() == (Tree{{name, bytes}}));
    EXPECT_EQ(calls, (std::vector<long>{SYS_fsync, SYS_fsync}));
}

TEST_F(CopyFileTest, SaysWhyItCannotRead) {
    write("abc");
    EXPECT_TRUE(
        message(copy(3, true, O_WRONLY)).starts_with("Die Datei ist auf der Karte nicht lesbar: "));
    EXPECT_TRUE(copies().empty());
    fs::remove(card.path("source"));
    EXPECT_TRUE(message(copy(3)).starts_with("Die Datei ist auf der Karte nicht lesbar: "));
    EXPECT_EQ(unreadableOnCard(ENODEV).error().message,
              "Die Datei ist auf der Karte nicht lesbar: Das Gerät ist nicht mehr da");
}

TEST_F(CopyFileTest, CopiesNothingButFiles) {
    ASSERT_EQ(::mkfifo(card.path("source").c_str(), 0600), 0);
    EXPECT_EQ(message(copy(0, true, O_RDONLY | O_NONBLOCK)),
              "Auf der Karte steht dort keine Datei");
    fs::remove(card.path("source"));
    card.makeFolder("source");
    EXPECT_EQ(message(copy(0)), "Auf der Karte steht dort keine Datei");
    EXPECT_TRUE(copies().empty());
}

}  // namespace
}  // namespace bildkurier
