// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DirectoryWalk.h"
#include "FileDescriptor.h"
#include "OrdinaryUser.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <thread>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

using Sizes = std::map<std::string, std::int64_t>;
using Errors = std::map<std::string, int>;

/// What a walk has reported, by path relative to its root.
struct Walked {
    Sizes files;
    Errors unreadable;
};

Walked walk(const std::string& root, const WalkOptions& options = {}) {
    Walked walked;
    std::mutex mutex;
    walkFiles(root, options,
              {.file =
                   [&](std::size_t, const WalkedFile& file) {
                       const std::lock_guard lock(mutex);
                       std::string path(file.folder);
                       if (!path.empty()) path += "/";
                       walked.files[path.append(file.name)] = file.size;
                   },
               .unreadable =
                   [&](std::size_t, std::string_view folder, int error) {
                       const std::lock_guard lock(mutex);
                       walked.unreadable[std::string(folder)] = error;
                   }});
    return walked;
}

/// Walks on a thread whose `calls` are put to `rule`.
Walked walkFiltered(const std::string& root, const std::vector<int>& calls,
                    const SystemCallRule& rule) {
    Walked walked;
    EXPECT_TRUE(runFiltered(calls, rule, [&] { walked = walk(root); }));
    return walked;
}

class DirectoryWalk : public testing::Test {
protected:
    const TemporaryFolder folder;
};

/// The same, for tests that have a say in system calls.
class FilteredDirectoryWalk : public DirectoryWalk {
protected:
    void SetUp() override {
        if (!runFiltered({}, {}, [] {})) GTEST_SKIP() << "the kernel lets no calls be filtered";
    }
};

/// A chain of folders, each named `name`, with a file in every one.
class DeepFolder {
public:
    DeepFolder(const std::string& root, std::string name, std::size_t depth)
        : name_(std::move(name)), deepest_(opened(AT_FDCWD, root)) {
        while (deepest_ && depth_ < depth && ::mkdirat(deepest_.get(), name_.c_str(), 0755) == 0) {
            ++depth_;
            deepest_ = opened(deepest_.get(), name_);
            if (deepest_) ::mknodat(deepest_.get(), "file", S_IFREG | 0644, 0);
        }
    }
    DeepFolder(const DeepFolder&) = delete;
    DeepFolder& operator=(const DeepFolder&) = delete;
    ~DeepFolder() {
        while (deepest_ && depth_ > 0) {
            --depth_;
            ::unlinkat(deepest_.get(), "file", 0);
            deepest_ = opened(deepest_.get(), "..");
            if (deepest_) ::unlinkat(deepest_.get(), name_.c_str(), AT_REMOVEDIR);
        }
    }

private:
    static FileDescriptor opened(int folder, const std::string& name) {
        return FileDescriptor(::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }

    std::string name_;
    std::size_t depth_ = 0;
    FileDescriptor deepest_;
};

}  // namespace

TEST_F(DirectoryWalk, FindsEveryFileAtAnyDepth) {
    folder.write("DCIM/100CANON/IMG_1.JPG", "one");
    folder.write("DCIM/100CANON/IMG_2.JPG", "second");
    folder.write("DCIM/101CANON/IMG_1.JPG", "");
    folder.write("bytes \xFF/\xC0.JPG", "odd");
    folder.write("top", "!");
    folder.makeFolder("empty/emptier");
    for (const std::size_t workers : {0, 1, 2, 16}) {
        const auto [files, unreadable] = walk(folder.path(), {.workers = workers});
        EXPECT_EQ(files, (Sizes{{"DCIM/100CANON/IMG_1.JPG", 3},
                                {"DCIM/100CANON/IMG_2.JPG", 6},
                                {"DCIM/101CANON/IMG_1.JPG", 0},
                                {"bytes \xFF/\xC0.JPG", 3},
                                {"top", 1}}));
        EXPECT_EQ(unreadable, Errors{});
    }
}

TEST_F(DirectoryWalk, TellsWhenAFileWasModified) {
    const std::string file = folder.write("file", "x");
    const std::array times{timespec{1, 2}, timespec{1'600'000'000, 222'222'222}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times.data(), 0), 0);
    walkFiles(folder.path(), {}, {.file = [](std::size_t, const WalkedFile& found) {
                  EXPECT_EQ(found.modified.tv_sec, 1'600'000'000);
                  EXPECT_EQ(found.modified.tv_nsec, 222'222'222);
              }});
}

TEST_F(DirectoryWalk, MeasuresFilesBeyondFourGigabytes) {
    fs::resize_file(folder.write("movie.mov", ""), 5'000'000'000);
    EXPECT_EQ(walk(folder.path()).files, (Sizes{{"movie.mov", 5'000'000'000}}));
}

TEST_F(DirectoryWalk, LeavesOutHiddenFilesAndFolders) {
    folder.write("file", "x");
    folder.write(".file", "x");
    folder.write("._file", "x");
    folder.write("...", "x");
    folder.write(".hidden/file", "x");
    folder.write("a/.hidden/b/file", "x");
    EXPECT_EQ(walk(folder.path()).files, (Sizes{{"file", 1}}));
    EXPECT_EQ(walk(folder.path(".hidden")).files, (Sizes{{"file", 1}}));
}

TEST_F(DirectoryWalk, TellsOfWhatIsHiddenWithoutLookingIntoIt) {
    for (const char* path : {".a/.b", "a/..b", "a/.file", "a/b/.hidden/file"})
        folder.write(path, "x");
    std::set<std::string> hidden;
    walkFiles(
        folder.path(), {},
        {.file = [](std::size_t, const WalkedFile&) { FAIL(); },
         .hidden = [&](std::size_t, std::string_view in,
                       std::string_view name) { hidden.insert(fmt::format("{}/{}", in, name)); }});
    EXPECT_EQ(hidden, (std::set<std::string>{"/.a", "a/..b", "a/.file", "a/b/.hidden"}));
}

TEST_F(DirectoryWalk, NeverFollowsALinkBelowItsRoot) {
    const TemporaryFolder elsewhere;
    elsewhere.write("secret", "x");
    folder.write("a/file", "x");
    fs::create_symlink(elsewhere.path(), folder.path("toFolder"));
    fs::create_symlink(elsewhere.path("secret"), folder.path("toFile"));
    fs::create_symlink("..", folder.path("a/loop"));
    fs::create_symlink("self", folder.path("self"));
    fs::create_symlink("nowhere", folder.path("dangling"));
    const auto [files, unreadable] = walk(folder.path());
    EXPECT_EQ(files, (Sizes{{"a/file", 1}}));
    EXPECT_EQ(unreadable, Errors{});
}

TEST_F(DirectoryWalk, FollowsALinkThatIsItsRoot) {
    folder.write("a/file", "x");
    fs::create_symlink("a", folder.path("link"));
    EXPECT_EQ(walk(folder.path("link")).files, (Sizes{{"file", 1}}));
}

TEST_F(DirectoryWalk, PassesOverWhatIsNoFile) {
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(::mknod(folder.path("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    folder.write("file", "x");
    const auto [files, unreadable] = walk(folder.path());
    EXPECT_EQ(files, (Sizes{{"file", 1}}));
    EXPECT_EQ(unreadable, Errors{});
}

TEST_F(DirectoryWalk, ReportsARootThatIsNoFolder) {
    folder.write("file", "x");
    EXPECT_EQ(walk(folder.path("missing")).unreadable, (Errors{{"", ENOENT}}));
    EXPECT_EQ(walk(folder.path("file")).unreadable, (Errors{{"", ENOTDIR}}));
    EXPECT_EQ(walk("").unreadable, (Errors{{"", ENOENT}}));
    walkFiles(folder.path("missing"), {}, {.file = [](std::size_t, const WalkedFile&) { FAIL(); }});
}

TEST_F(DirectoryWalk, ReportsAFolderThatMayNotBeReadAndGoesOn) {
    folder.write("closed/file", "x");
    folder.write("open/file", "x");
    folder.write("namesOnly/a", "x");
    folder.write("namesOnly/b", "x");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder.path("closed"), fs::perms::none);
    fs::permissions(folder.path("namesOnly"), fs::perms::owner_read | fs::perms::others_read);
    runAsOrdinaryUser([&] {
        const auto [files, unreadable] = walk(folder.path());
        EXPECT_EQ(files, (Sizes{{"open/file", 1}}));
        EXPECT_EQ(unreadable, (Errors{{"closed", EACCES}, {"namesOnly", EACCES}}));
    });
    fs::permissions(folder.path("closed"), fs::perms::owner_all);
    fs::permissions(folder.path("namesOnly"), fs::perms::owner_all);
}

TEST_F(DirectoryWalk, ReadsAsManyFoldersAtOnceAsItHasWorkers) {
    constexpr std::size_t workers = 6;
    for (std::size_t n = 0; n < workers; ++n) folder.write(std::to_string(n) + "/file", "x");
    std::mutex mutex;
    std::condition_variable changed;
    std::set<std::size_t> reading;
    walkFiles(folder.path(), {.workers = workers},
              {.file = [&](std::size_t worker, const WalkedFile&) {
                  std::unique_lock lock(mutex);
                  reading.insert(worker);
                  changed.notify_all();
                  EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(60),
                                               [&] { return reading.size() == workers; }));
              }});
    EXPECT_EQ(reading, (std::set<std::size_t>{0, 1, 2, 3, 4, 5}));
}

TEST_F(DirectoryWalk, ReadsNoFolderOnceItIsCancelled) {
    folder.write("file", "x");
    for (const auto name : {"a/file", "b/file", "c/file"}) folder.write(name, "x");
    int questions = 0;
    EXPECT_EQ(walk(folder.path(), {.cancelled = [&] { return ++questions > 2; }}).files.size(), 2);
    EXPECT_EQ(walk(folder.path(), {.cancelled = [] { return true; }}).files, Sizes{});
    EXPECT_EQ(walk(folder.path(), {.workers = 8, .cancelled = [] { return true; }}).files, Sizes{});
    EXPECT_EQ(walk(folder.path(), {.cancelled = [] { return false; }}).files.size(), 4);
}

TEST_F(DirectoryWalk, KeepsNobodyWaitingForAVisitorThatThrows) {
    for (const auto* path : {"a/file", "b/file", "c/file"}) folder.write(path, "x");
    for (const std::size_t thrower : {0U, 1U}) {
        std::atomic<bool> thrown = false;
        const WalkVisitor visitor{.file = [&](std::size_t worker, const WalkedFile& /*file*/) {
            if (worker == thrower) {
                thrown = true;
                throw std::bad_alloc();
            }
            while (!thrown) std::this_thread::yield();
        }};
        EXPECT_THROW(walkFiles(folder.path(), {.workers = 2}, visitor), std::bad_alloc) << thrower;
    }
}

TEST_F(DirectoryWalk, ReadsFoldersWithVeryManyFiles) {
    const std::string longName(240, 'n');
    for (int n = 0; n < 2'000; ++n) folder.write("many/" + longName + std::to_string(n), "");
    EXPECT_EQ(walk(folder.path()).files.size(), 2'000);
}

TEST_F(DirectoryWalk, GoesThroughManyLevels) {
    const DeepFolder deep(folder.path(), "d", 1'100);
    const auto [files, unreadable] = walk(folder.path(), {.workers = 2});
    EXPECT_EQ(files.size(), 1'100);
    EXPECT_EQ(unreadable, Errors{});
}

TEST_F(DirectoryWalk, StopsWherePathsGetTooLong) {
    const std::string name(99, 'd');
    const DeepFolder deep(folder.path(), name, 60);
    const auto [files, unreadable] = walk(folder.path());
    EXPECT_EQ(files.size(), PATH_MAX / 100);
    ASSERT_EQ(unreadable.size(), 1);
    EXPECT_EQ(unreadable.begin()->second, ENAMETOOLONG);
}

TEST_F(DirectoryWalk, NeedsFewDescriptorsForADeepAndWideTree) {
    std::string path;
    for (int level = 0; level < 100; ++level) {
        path += "d/";
        for (const auto sibling : {"a", "b", "c"}) folder.write(path + sibling + "/file", "");
    }
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit few{.rlim_cur = 40, .rlim_max = usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const auto [files, unreadable] = walk(folder.path(), {.workers = 4});
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
    EXPECT_EQ(files.size(), 300);
    EXPECT_EQ(unreadable, Errors{});
}

TEST_F(DirectoryWalk, LooksCloserWhereTheVolumeDoesNotTellFilesFromFolders) {
    const TemporaryVolume volume(16'000'000, {"mkfs.ext4", "-q", "-O", "^filetype"});
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    volume.write("file", "x");
    volume.write("a/b/file", "xx");
    volume.write(".hidden/file", "x");
    fs::create_symlink("a", volume.path() + "/link");
    EXPECT_EQ(walk(volume.path()).files, (Sizes{{"file", 1}, {"a/b/file", 2}}));
}

TEST_F(FilteredDirectoryWalk, NeverFollowsALinkThatTakesAFoldersPlace) {
    const TemporaryFolder elsewhere;
    elsewhere.write("secret", "x");
    elsewhere.write("b/secret", "x");
    // The root is opened twice, then "a" to be read, then "a" and "b" in it.
    const struct {
        int openedBefore;
        std::string replaced;
        std::string unreadable;
    } cases[] = {{2, "a", "a"}, {3, "a", "a/b"}, {4, "a/b", "a/b"}};
    for (const auto& [openedBefore, replaced, unreadable] : cases) {
        folder.write("a/b/file", "x");
        int opened = 0;
        const auto walked = walkFiltered(folder.path(), {SYS_openat}, [&](const seccomp_data&) {
            if (opened++ == openedBefore) {
                fs::rename(folder.path(replaced), folder.path(".away"));
                fs::create_symlink(elsewhere.path(), folder.path(replaced));
            }
            return 0;
        });
        EXPECT_EQ(walked.files, Sizes{}) << openedBefore;
        EXPECT_EQ(walked.unreadable, (Errors{{unreadable, ENOTDIR}})) << openedBefore;
        fs::remove_all(folder.path("a"));
        fs::remove_all(folder.path(".away"));
    }
}

TEST_F(FilteredDirectoryWalk, ReportsAFileThatIsNamedButNotThere) {
    folder.write("file", "x");
    folder.write("gone", "x");
    const auto [files, unreadable] =
        walkFiltered(folder.path(), {SYS_statx}, [&](const seccomp_data& call) {
            if (pathArgument(call) == "gone") fs::remove(folder.path("gone"));
            return 0;
        });
    EXPECT_EQ(files, (Sizes{{"file", 1}}));
    EXPECT_EQ(unreadable, (Errors{{"", ENOENT}}));
}

TEST_F(FilteredDirectoryWalk, ReportsAFileThatCannotBeMeasured) {
    folder.write("a/bad", "x");
    folder.write("a/file", "x");
    const auto [files, unreadable] = walkFiltered(
        folder.path(), {SYS_statx},
        [](const seccomp_data& call) { return pathArgument(call) == "bad" ? EIO : 0; });
    EXPECT_EQ(files, (Sizes{{"a/file", 1}}));
    EXPECT_EQ(unreadable, (Errors{{"a", EIO}}));
}

TEST_F(FilteredDirectoryWalk, ReportsAFolderThatCannotBeReadToItsEnd) {
    folder.write("a/file", "x");
    for (const int readsBefore : {2, 3}) {
        const auto [files, unreadable] = walkFiltered(folder.path(), {SYS_getdents64},
                                                      [&, reads = 0](const seccomp_data&) mutable {
                                                          return reads++ == readsBefore ? EIO : 0;
                                                      });
        EXPECT_EQ(files.size(), readsBefore == 2 ? 0 : 1);
        EXPECT_EQ(unreadable, (Errors{{"a", EIO}}));
    }
}

TEST_F(FilteredDirectoryWalk, GoesOnAfterEverySignal) {
    folder.write("a/b/file", "x");
    folder.write("file", "x");
    const auto [files, unreadable] =
        walkFiltered(folder.path(), {SYS_openat, SYS_getdents64, SYS_statx},
                     [calls = 0](const seccomp_data&) mutable { return ++calls % 2 ? EINTR : 0; });
    EXPECT_EQ(files, (Sizes{{"a/b/file", 1}, {"file", 1}}));
    EXPECT_EQ(unreadable, Errors{});
}

TEST_F(FilteredDirectoryWalk, MakesDoWithTheThreadsItGets) {
    folder.write("a/file", "x");
    folder.write("b/file", "x");
    Walked walked;
    int refused = 0;
    const auto refuse = [&](const seccomp_data&) {
        ++refused;
        return EAGAIN;
    };
    ASSERT_TRUE(runFiltered({SYS_clone, SYS_clone3}, refuse,
                            [&] { walked = walk(folder.path(), {.workers = 4}); }));
    EXPECT_EQ(refused, 1);
    EXPECT_EQ(walked.files, (Sizes{{"a/file", 1}, {"b/file", 1}}));
}

}  // namespace bildkurier
