// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DurableFiles.h"
#include "DurableFolders.h"
#include "FileDescriptor.h"
#include "HiddenCopies.h"
#include "OrdinaryUser.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"
#include "Tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

using Calls = std::vector<std::string>;

/// The last name of a path, or "hidden" for a temporary one.
std::string shortName(const fs::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with(".bildkurier-") ? "hidden" : name;
}

std::string openFile(const seccomp_data& call) {
    return shortName(fs::read_symlink("/proc/self/fd/" + std::to_string(call.args[0])));
}

std::string path(const seccomp_data& call) { return shortName(pathArgument(call)); }

/// The calls that a test sees, and whether each names its file by a path or a descriptor.
const struct {
    int number;
    std::string does;
    std::string (*which)(const seccomp_data& call);
} watched[] = {
    {SYS_fsync, "flush ", openFile},    {SYS_renameat2, "rename ", path},
    {SYS_syncfs, "sync ", openFile},    {SYS_renameat, "replace ", path},
    {SYS_linkat, "link ", path},        {SYS_unlinkat, "remove ", path},
    {SYS_mkdirat, "make ", path},       {SYS_openat, "open ", path},
    {SYS_read, "read ", openFile},      {SYS_write, "write ", openFile},
    {SYS_utimensat, "date ", openFile}, {SYS_close, "close ", openFile},
    {SYS_newfstatat, "look ", path},
};

/// A system call in words: what it does, and to which file.
std::string inWords(const seccomp_data& call) {
    const auto seen = std::ranges::find(watched, call.nr, [](const auto& w) { return w.number; });
    return seen->does + seen->which(call);
}

/// Whether a call changes what is on the disk, or its durability.
bool isChange(const std::string& call) {
    return !std::ranges::any_of(std::array{"open", "read", "write", "date", "close", "look"},
                                [&](const char* other) { return call.starts_with(other); });
}

/// A staged picture, a folder for it, and a say in every system call.
class DurableFiles : public testing::Test {
protected:
    void SetUp() override {
        if (!runFiltered({}, {}, [] {})) GTEST_SKIP() << "the kernel lets no calls be filtered";
    }

    /// Runs `change` while `rule` answers its calls; leaves those that change something in
    /// `calls`.
    int run(const std::function<int()>& change) {
        calls.clear();
        int error = -1;
        const auto decide = [this](const seccomp_data& call) {
            const std::string words = inWords(call);
            if (isChange(words)) calls.push_back(words);
            return rule(words);
        };
        std::vector<int> numbers;
        for (const auto& seen : watched) numbers.push_back(seen.number);
        EXPECT_TRUE(runFiltered(numbers, decide, [&] { error = change(); }));
        return error;
    }

    int move() {
        return run([this] { return moveFile(source, target); });
    }

    /// Fails call `k` of a move, or all from there on, on a volume that lacks some calls, and
    /// checks what is left. False when there are fewer calls.
    bool moveFailing(std::size_t k, bool forGood, const std::map<std::string, int>& lacking) {
        const TemporaryFolder fresh;
        const std::string from = fresh.write("staging/staged", "picture");
        const std::string to = fresh.makeFolder("JPG") + "/IMG_1.JPG";
        std::set<std::string> failed;
        rule = [&, n = std::size_t{0}](const std::string& call) mutable {
            const std::size_t now = n++;
            const bool fails = forGood ? now >= k : now == k;
            if (!fails) return lacking.contains(call) ? lacking.at(call) : 0;
            failed.insert(call);
            return EIO;
        };
        const int error = run([&] { return moveFile(from, to); });
        const std::string story = testing::PrintToString(failed);

        Tree found = tree(fresh.path());
        const bool moved = found.contains("JPG/IMG_1.JPG");
        const bool kept = found.contains("staging/staged");
        Tree whole{{"staging/", ""}, {"JPG/", ""}};
        if (moved) whole["JPG/IMG_1.JPG"] = "picture";
        if (kept) whole["staging/staged"] = "picture";
        const auto isHiddenCopy = [](const auto& item) {
            return item.first.starts_with("JPG/.bildkurier-");
        };
        if (failed.contains("remove hidden")) std::erase_if(found, isHiddenCopy);
        EXPECT_EQ(found, whole) << story;
        EXPECT_TRUE(moved || kept) << story;

        const auto hasFailed = [&](const char* call) { return failed.contains(call); };
        const bool mustFail =
            std::ranges::any_of(std::array{"read staged", "write hidden", "flush staged",
                                           "flush hidden", "flush JPG", "close hidden"},
                                hasFailed);
        const std::set<int> answers = failed.empty() ? std::set{0}
                                      : mustFail     ? std::set{EIO}
                                                     : std::set{moved ? 0 : EIO, EIO};
        EXPECT_TRUE(answers.contains(error)) << story << ": " << error;
        return !failed.empty();
    }

    const TemporaryFolder folder;
    const std::string source = folder.write("staging/staged", "picture");
    const std::string target = folder.makeFolder("JPG") + "/IMG_1.JPG";
    const Tree before = tree(folder.path());
    const Tree after{{"staging/", ""}, {"JPG/", ""}, {"JPG/IMG_1.JPG", "picture"}};

    std::function<int(const std::string& call)> rule = [](const std::string&) { return 0; };
    Calls calls;
};

/// Refuses the first call of those words.
auto once(const std::string& words, int error) {
    return [=, done = false](const std::string& call) mutable {
        if (done || call != words) return 0;
        done = true;
        return error;
    };
}

/// Refuses all calls of those words.
auto always(const std::string& words, int error) {
    return [=](const std::string& call) { return call == words ? error : 0; };
}

}  // namespace

TEST_F(DurableFiles, FlushAFileBeforeItsNewNameAndTheFolderAfterIt) {
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "flush JPG"}));
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, LinkWhereTheVolumeCannotRenameWithoutReplacing) {
    for (const int lacking : {EINVAL, ENOSYS, EOPNOTSUPP}) {
        rule = always("rename staged", lacking);
        EXPECT_EQ(move(), 0) << lacking;
        EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "link staged", "remove staged",
                                "flush JPG"}));
        EXPECT_EQ(tree(folder.path()), after);
        fs::rename(target, source);
    }
}

TEST_F(DurableFiles, LookFirstWhereTheVolumeCannotLinkEither) {
    for (const int lacking : {EPERM, ENOSYS, EOPNOTSUPP, EMLINK, EINVAL}) {
        rule = [&](const std::string& call) {
            if (call == "rename staged") return EINVAL;
            return call == "link staged" ? lacking : 0;
        };
        EXPECT_EQ(move(), 0) << lacking;
        EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "link staged", "replace staged",
                                "flush JPG"}));
        EXPECT_EQ(tree(folder.path()), after);
        fs::rename(target, source);
    }
}

TEST_F(DurableFiles, ReportALinkThatFailsOnAVolumeWithLinks) {
    for (const int error : {EACCES, EIO, ENOSPC, EROFS, EEXIST}) {
        rule = [&](const std::string& call) {
            if (call == "rename staged") return EINVAL;
            return call == "link staged" ? error : 0;
        };
        EXPECT_EQ(move(), error);
        EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "link staged"}));
        EXPECT_EQ(tree(folder.path()), before);
    }
}

TEST_F(DurableFiles, CopyWhereOnlyTheLinkTellsTheVolumesApart) {
    rule = [&](const std::string& call) {
        if (call == "rename staged") return EINVAL;
        return call == "link staged" ? EXDEV : 0;
    };
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "link staged", "flush hidden",
                            "rename hidden", "flush JPG", "remove staged"}));
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, NeverReplaceWhatAppearsJustBeforeTheRename) {
    for (const Calls& lacking :
         {Calls{}, Calls{"rename staged"}, Calls{"rename staged", "link staged"}}) {
        rule = [&](const std::string& call) {
            if (call == "rename staged") folder.write("JPG/IMG_1.JPG", "another");
            return std::ranges::find(lacking, call) == lacking.end() ? 0 : EOPNOTSUPP;
        };
        EXPECT_EQ(move(), EEXIST);
        EXPECT_EQ(tree(folder.path()), (Tree{{"staging/", ""},
                                             {"staging/staged", "picture"},
                                             {"JPG/", ""},
                                             {"JPG/IMG_1.JPG", "another"}}));
        fs::remove(target);
    }
}

TEST_F(DurableFiles, NameNothingInAFolderThatWasMadeAnewMeanwhile) {
    rule = [&](const std::string& call) {
        if (call != "flush staged") return 0;
        fs::remove_all(folder.path("staging"));
        folder.write("staging/staged", "pic");
        return 0;
    };
    EXPECT_EQ(move(), ENOENT);
    EXPECT_EQ(tree(folder.path()),
              (Tree{{"staging/", ""}, {"staging/staged", "pic"}, {"JPG/", ""}}));
}

TEST_F(DurableFiles, DoNotNameAFileThatTookThePlaceOfTheFlushedOne) {
    rule = [&](const std::string& call) {
        if (call != "flush staged") return 0;
        fs::remove(source);
        folder.write("staging/staged", "another");
        return 0;
    };
    EXPECT_EQ(move(), ESTALE);
    EXPECT_EQ(calls, Calls{"flush staged"});
    EXPECT_EQ(tree(folder.path()),
              (Tree{{"staging/", ""}, {"staging/staged", "another"}, {"JPG/", ""}}));
}

TEST_F(DurableFiles, DoNotNameAFileThatGrowsOrShrinksDuringItsFlush) {
    for (const std::uintmax_t size : {0U, 6U, 8U}) {
        folder.write("staging/staged", "picture");
        rule = [&](const std::string& call) {
            if (call == "flush staged") fs::resize_file(source, size);
            return 0;
        };
        EXPECT_EQ(move(), ESTALE);
        EXPECT_EQ(calls, Calls{"flush staged"});
        EXPECT_FALSE(fs::exists(target));
    }
}

TEST_F(DurableFiles, TakeANameBackThatWentToAnotherFileOrSize) {
    const std::function<void()> changes[] = {
        [&] {
            fs::remove(source);
            folder.write("staging/staged", "another");
        },
        [&] { fs::resize_file(source, 3); },
    };
    for (const auto& change : changes) {
        for (const Calls& lacking :
             {Calls{}, Calls{"rename staged"}, Calls{"rename staged", "link staged"}}) {
            folder.write("staging/staged", "picture");
            Tree changed;
            rule = [&](const std::string& call) {
                if (call == "rename staged") {
                    change();
                    changed = tree(folder.path());
                }
                return std::ranges::find(lacking, call) == lacking.end() ? 0 : EOPNOTSUPP;
            };
            EXPECT_EQ(move(), ESTALE);
            EXPECT_EQ(calls.back(), "rename IMG_1.JPG");
            EXPECT_EQ(tree(folder.path()), changed);
        }
    }
}

TEST_F(DurableFiles, RemoveAWrongNameThatCannotBeTakenBack) {
    rule = [&](const std::string& call) {
        if (call == "rename staged") fs::resize_file(source, 3);
        if (call == "rename IMG_1.JPG") folder.write("staging/staged", "new");
        return 0;
    };
    EXPECT_EQ(move(), ESTALE);
    EXPECT_EQ(calls,
              (Calls{"flush staged", "rename staged", "rename IMG_1.JPG", "remove IMG_1.JPG"}));
    EXPECT_EQ(tree(folder.path()),
              (Tree{{"staging/", ""}, {"staging/staged", "new"}, {"JPG/", ""}}));
}

TEST_F(DurableFiles, TouchNothingWhereTheNameIsTakenFromTheStart) {
    for (const bool dangling : {false, true}) {
        fs::create_symlink(dangling ? "nowhere" : source, target);
        const Tree taken = tree(folder.path());
        EXPECT_EQ(move(), EEXIST);
        EXPECT_EQ(calls, Calls{});
        EXPECT_EQ(tree(folder.path()), taken);
        fs::remove(target);
    }
}

TEST_F(DurableFiles, DoNotRenameWhenItCannotBeKnownWhetherTheNameIsTaken) {
    rule = [looks = 0](const std::string& call) mutable {
        if (call == "rename staged" || call == "link staged") return EOPNOTSUPP;
        return call == "look IMG_1.JPG" && ++looks > 1 ? EIO : 0;
    };
    EXPECT_EQ(move(), EIO);
    EXPECT_EQ(tree(folder.path()), before);
}

TEST_F(DurableFiles, CopyToAnotherVolumeUnderAHiddenNameFirst) {
    ASSERT_EQ(::chmod(source.c_str(), 0640), 0);
    const std::array times{timespec{1'700'000'000, 111}, timespec{1'600'000'000, 222'222'222}};
    ASSERT_EQ(::utimensat(AT_FDCWD, source.c_str(), times.data(), 0), 0);
    rule = always("rename staged", EXDEV);
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "flush hidden", "rename hidden",
                            "flush JPG", "remove staged"}));
    EXPECT_EQ(tree(folder.path()), after);
    struct stat facts{};
    ASSERT_EQ(::stat(target.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mtim.tv_sec, 1'600'000'000);
    EXPECT_EQ(facts.st_mtim.tv_nsec, 222'222'222);
    EXPECT_EQ(facts.st_mode & 0777, 0640);
}

TEST_F(DurableFiles, RemoveWhatCrashesHaveLeftOfCopiesBeforeOneMore) {
    const std::string hidden = "JPG/.bildkurier-0123456789abcde";
    folder.write(hidden + "f", "pic");
    EXPECT_EQ(move(), 0);
    EXPECT_TRUE(fs::exists(folder.path(hidden + "f")));
    fs::rename(target, source);

    Tree kept = after;
    const std::array others{hidden,
                            hidden + "F",
                            hidden + "ff",
                            hidden + "g",
                            std::string("JPG/bildkurier-0123456789abcdef"),
                            std::string("JPG/IMG_0.JPG")};
    for (const std::string& other : others) {
        folder.write(other, "x");
        kept[other] = "x";
    }
    folder.makeFolder(hidden + "0");
    kept[hidden + "0/"] = "";
    fs::create_symlink("IMG_0.JPG", folder.path(hidden + "1"));
    rule = always("rename staged", EXDEV);
    EXPECT_EQ(move(), 0);
    EXPECT_TRUE(fs::is_symlink(folder.path(hidden + "1")));
    fs::remove(folder.path(hidden + "1"));
    EXPECT_EQ(tree(folder.path()), kept);
}

TEST_F(DurableFiles, LeaveACopyThatAnotherStillWrites) {
    const std::string hidden = folder.write("JPG/.bildkurier-0123456789abcdef", "pic");
    FileDescriptor writer(::open(hidden.c_str(), O_WRONLY | O_CLOEXEC));
    lockHiddenCopy(writer);
    rule = always("rename staged", EXDEV);
    EXPECT_EQ(move(), 0);
    EXPECT_TRUE(fs::exists(hidden));
    fs::rename(target, source);
    writer.close();
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, LockTheCopyThatTheyWrite) {
    bool survives = false;
    rule = [&](const std::string& call) {
        if (call == "rename staged") return EXDEV;
        if (call == "flush hidden") {
            const FileDescriptor jpg(::open(folder.path("JPG").c_str(), O_RDONLY | O_CLOEXEC));
            removeAbandonedCopies(jpg.get());
            survives = tree(folder.path("JPG")).size() == 1;
        }
        return 0;
    };
    EXPECT_EQ(move(), 0);
    EXPECT_TRUE(survives);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, NameACopyAsCarefullyAsAnyFile) {
    rule = [&](const std::string& call) {
        if (call == "rename staged") return EXDEV;
        return call == "rename hidden" || call == "link hidden" ? EOPNOTSUPP : 0;
    };
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(calls, (Calls{"flush staged", "rename staged", "flush hidden", "rename hidden",
                            "link hidden", "replace hidden", "flush JPG", "remove staged"}));
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, NeverReplaceWhatAppearsDuringTheCopy) {
    rule = [&](const std::string& call) {
        if (call == "flush hidden") folder.write("JPG/IMG_1.JPG", "another");
        return call == "rename staged" ? EXDEV : 0;
    };
    EXPECT_EQ(move(), EEXIST);
    EXPECT_EQ(tree(folder.path()), (Tree{{"staging/", ""},
                                         {"staging/staged", "picture"},
                                         {"JPG/", ""},
                                         {"JPG/IMG_1.JPG", "another"}}));
}

TEST_F(DurableFiles, ReportACopyThatIsNotTheWholeFile) {
    for (const auto call : {"read staged", "write hidden"}) {
        rule = [&](const std::string& words) {
            if (words == "rename staged") return EXDEV;
            return words == call ? doNothing : 0;
        };
        EXPECT_EQ(move(), EIO) << call;
        EXPECT_EQ(tree(folder.path()), before) << call;
    }
}

TEST_F(DurableFiles, ReportASourceThatChangesDuringItsCopy) {
    const std::pair<std::string, int> changes[] = {
        {"PICTURE", ESTALE}, {"pictur", ESTALE}, {"pictures", EIO}};
    for (const auto& [contents, error] : changes) {
        folder.write("staging/staged", "picture");
        // Some file systems count time in steps that are longer than a test.
        fs::last_write_time(source, fs::file_time_type::clock::now() - std::chrono::hours(1));
        rule = [&](const std::string& call) {
            if (call == "rename staged") return EXDEV;
            if (call == "write hidden") folder.write("staging/staged", contents);
            return 0;
        };
        EXPECT_EQ(move(), error) << contents;
        EXPECT_EQ(tree(folder.path("JPG")), Tree{}) << contents;
    }
}

TEST_F(DurableFiles, DoNotCopyAFileThatTookThePlaceOfTheFlushedOne) {
    rule = [&](const std::string& call) {
        if (call != "rename staged") return 0;
        fs::remove(source);
        folder.write("staging/staged", "another");
        return EXDEV;
    };
    EXPECT_EQ(move(), ESTALE);
    EXPECT_EQ(tree(folder.path()),
              (Tree{{"staging/", ""}, {"staging/staged", "another"}, {"JPG/", ""}}));
}

TEST_F(DurableFiles, LeaveASourceThatCannotBeRemoved) {
    for (const int lacking : {EXDEV, EINVAL}) {
        rule = [&](const std::string& call) {
            if (call == "rename staged") return lacking;
            return call == "remove staged" ? EACCES : 0;
        };
        EXPECT_EQ(move(), 0);
        Tree both = before;
        both["JPG/IMG_1.JPG"] = "picture";
        EXPECT_EQ(tree(folder.path()), both);
        fs::remove(target);
    }
}

TEST_F(DurableFiles, KeepTheDateOfACopyWhereTheVolumeCanAndCopyAnyway) {
    rule = [](const std::string& call) {
        if (call == "rename staged") return EXDEV;
        return call == "date hidden" ? EPERM : 0;
    };
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, DoNotMindAVolumeThatCannotFlushFolders) {
    rule = always("flush JPG", EINVAL);
    EXPECT_EQ(move(), 0);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, ReportAFlushThatFails) {
    rule = always("flush staged", EIO);
    EXPECT_EQ(move(), EIO);
    EXPECT_EQ(tree(folder.path()), before);

    rule = always("flush staged", EINVAL);
    EXPECT_EQ(move(), EINVAL);
    EXPECT_EQ(tree(folder.path()), before);

    rule = always("flush JPG", EIO);
    EXPECT_EQ(move(), EIO);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, ReportWhatKeepsACopyFromBeingWritten) {
    for (const auto call : {"open hidden", "read staged", "write hidden", "flush hidden",
                            "close hidden", "rename hidden"}) {
        for (const int error : {EIO, ENOSPC, EDQUOT}) {
            rule = [&](const std::string& words) {
                if (words == "rename staged") return EXDEV;
                return words == call ? error : 0;
            };
            EXPECT_EQ(move(), error) << call;
            EXPECT_EQ(tree(folder.path()), before) << call;
        }
    }
}

TEST_F(DurableFiles, GoOnAfterASignal) {
    for (const auto call : {"look IMG_1.JPG", "look ", "open staging", "open JPG", "open staged",
                            "open hidden", "read staged", "write hidden", "flush staged",
                            "flush hidden", "flush JPG", "rename staged", "rename hidden"}) {
        rule = [&, interrupted = false, copying = false](const std::string& words) mutable {
            const bool first = !std::exchange(interrupted, interrupted || words == call);
            if (first && words == call) return EINTR;
            if (words == "rename staged" && !std::exchange(copying, true)) return EXDEV;
            return 0;
        };
        EXPECT_EQ(move(), 0) << call;
        EXPECT_EQ(tree(folder.path()), after) << call;
        fs::rename(target, source);
    }
}

/// Fails call k of a move for every k, once or for good, on volumes of all kinds.
TEST_F(DurableFiles, AreWholeWhicheverCallFails) {
    const std::map<std::string, int> volumes[] = {
        {},
        {{"rename staged", EINVAL}},
        {{"rename staged", EINVAL}, {"link staged", EPERM}},
        {{"rename staged", EXDEV}},
        {{"rename staged", EXDEV}, {"rename hidden", EINVAL}},
        {{"rename staged", EXDEV}, {"rename hidden", EINVAL}, {"link hidden", EPERM}},
    };
    for (const auto& lacking : volumes) {
        for (const bool forGood : {false, true}) {
            for (std::size_t k = 0; moveFailing(k, forGood, lacking); ++k) continue;
        }
    }
}

TEST_F(DurableFiles, MoveOnlyFiles) {
    fs::create_directory(folder.path("folder"));
    fs::create_symlink(source, folder.path("link"));
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(moveFile(folder.path("folder"), target), EISDIR);
    EXPECT_EQ(moveFile(folder.path("link"), target), ELOOP);
    EXPECT_EQ(moveFile(folder.path("pipe"), target), EINVAL);
    EXPECT_EQ(moveFile(folder.path("missing"), target), ENOENT);
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(DurableFiles, MoveAFileThatMayOnlyBeRead) {
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder.path("JPG"), fs::perms::all);
    fs::permissions(folder.path("staging"), fs::perms::all);
    fs::permissions(source, fs::perms::owner_read | fs::perms::others_read);
    int error = -1;
    runAsOrdinaryUser([&] { error = moveFile(source, target); });
    EXPECT_EQ(error, 0);
    EXPECT_EQ(tree(folder.path()), after);
}

TEST_F(DurableFiles, MoveWithinTheWorkingFolder) {
    const fs::path workingFolder = fs::current_path();
    fs::current_path(folder.path("staging"));
    EXPECT_EQ(moveFile("staged", "IMG_1.JPG"), 0);
    EXPECT_EQ(makeFolder("a/b"), 0);
    EXPECT_EQ(makeFolder(""), ENOENT);
    fs::current_path(workingFolder);
    EXPECT_EQ(tree(folder.path("staging")),
              (Tree{{"IMG_1.JPG", "picture"}, {"a/", ""}, {"a/b/", ""}}));
}

TEST_F(DurableFiles, MoveToAnotherVolumeAndBack) {
    const TemporaryFolder other("/dev/shm");
    struct stat here{};
    struct stat there{};
    ASSERT_EQ(::stat(folder.path().c_str(), &here), 0);
    ASSERT_EQ(::stat(other.path().c_str(), &there), 0);
    if (here.st_dev == there.st_dev) GTEST_SKIP() << "there is no second volume here";
    std::string large;
    for (int n = 0; n < 1'000'000; ++n) large += std::to_string(n);
    folder.write("staging/staged", large);
    ASSERT_EQ(moveFile(source, other.path("IMG_1.JPG")), 0);
    EXPECT_TRUE(tree(other.path()) == (Tree{{"IMG_1.JPG", large}}));
    EXPECT_EQ(tree(folder.path("staging")), Tree{});
    folder.write("staging/staged", "another");
    EXPECT_EQ(moveFile(source, other.path("IMG_1.JPG")), EEXIST);
    EXPECT_TRUE(tree(other.path()) == (Tree{{"IMG_1.JPG", large}}));
    EXPECT_EQ(tree(folder.path("staging")), (Tree{{"staged", "another"}}));
    ASSERT_EQ(moveFile(other.path("IMG_1.JPG"), target), 0);
    EXPECT_TRUE(tree(folder.path("JPG")) == (Tree{{"IMG_1.JPG", large}}));
    EXPECT_EQ(tree(other.path()), Tree{});
}

TEST_F(DurableFiles, LeaveNothingOnAVolumeThatIsFull) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    const std::string large(1'500'000, 'x');
    folder.write("staging/staged", large);
    EXPECT_EQ(moveFile(source, volume.path() + "/IMG_1.JPG"), ENOSPC);
    EXPECT_EQ(tree(volume.path()), Tree{});
    EXPECT_TRUE(tree(folder.path("staging")) == (Tree{{"staged", large}}));
}

TEST_F(DurableFiles, FlushEveryFolderInWhichOneIsMade) {
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a/b/c")); }), 0);
    EXPECT_EQ(calls, (Calls{"flush " + shortName(folder.path()), "make a", "flush JPG", "make b",
                            "flush a", "make c", "flush b"}));
}

TEST_F(DurableFiles, FlushTheNameOfAFolderThatExistsAsItsMakerMayHaveFailed) {
    rule = always("flush JPG", EIO);
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a")); }), EIO);
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a")); }), EIO);
    EXPECT_EQ(calls, Calls{"flush JPG"});
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a/b")); }), EIO);
    EXPECT_EQ(calls, Calls{"flush JPG"});
    rule = always("flush JPG", 0);
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a/b")); }), 0);
    EXPECT_EQ(calls, (Calls{"flush JPG", "make b", "flush a"}));
}

TEST_F(DurableFiles, FlushTheNameOfAFolderOnce) {
    DurableFolders folders;
    const auto make = [&] { return folders.make(folder.path("JPG/a")); };
    folder.makeFolder("JPG/a");
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, Calls{"flush JPG"});
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, Calls{});

    // Another one under its name.
    fs::rename(folder.path("JPG/a"), folder.path("JPG/b"));
    folder.makeFolder("JPG/a");
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, Calls{"flush JPG"});
    fs::remove(folder.path("JPG/a"));
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, (Calls{"flush " + shortName(folder.path()), "make a", "flush JPG"}));
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, Calls{});

    // The same one under another name.
    fs::remove(folder.path("JPG/a"));
    fs::rename(folder.path("JPG/b"), folder.path("JPG/c"));
    EXPECT_EQ(run([&] { return folders.make(folder.path("JPG/c")); }), 0);
    EXPECT_EQ(calls, Calls{"flush JPG"});

    folder.write("JPG/file", "");
    EXPECT_EQ(run([&] { return folders.make(folder.path("JPG/file")); }), EEXIST);
}

TEST_F(DurableFiles, FlushTheNameOfAFolderAgainWhereThatFailed) {
    DurableFolders folders;
    const auto make = [&] { return folders.make(folder.path("JPG/a")); };
    rule = always("flush JPG", EIO);
    EXPECT_EQ(run(make), EIO);
    EXPECT_EQ(run(make), EIO);
    rule = always("flush JPG", 0);
    EXPECT_EQ(run(make), 0);
    EXPECT_EQ(calls, Calls{"flush JPG"});
}

TEST_F(DurableFiles, TakeAFolderWhereTheOneAboveCannotBeFlushed) {
    const auto make = [&] { return makeFolder(folder.path("JPG/a")); };
    for (const int lacking : {EINVAL, ENOSYS}) {
        folder.makeFolder("JPG/a");
        rule = always("flush JPG", lacking);
        EXPECT_EQ(run(make), 0) << lacking;
        fs::remove(folder.path("JPG/a"));
        EXPECT_EQ(run(make), 0) << lacking;
        EXPECT_TRUE(fs::exists(folder.path("JPG/a"))) << lacking;
    }
}

TEST_F(DurableFiles, FlushTheVolumeWhereTheFolderAboveMayBeWrittenButNotRead) {
    rule = always("open JPG", EACCES);
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a/b")); }), 0);
    const std::string above = "flush " + shortName(folder.path());
    EXPECT_EQ(calls, (Calls{above, "make a", "sync a", "make b", "flush a"}));
    rule = [](const std::string& call) {
        if (call == "open JPG") return EACCES;
        return call == "sync a" ? EIO : 0;
    };
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a")); }), EIO);
    EXPECT_EQ(calls, Calls{"sync a"});
}

TEST_F(DurableFiles, FlushTheNameOfAFolderThatThisUserMayHaveMade) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    const fs::path above = fs::path(volume.path()) / "above";
    fs::create_directories(above / "a");
    const auto enter = fs::perms::others_exec;
    fs::permissions(fs::path(volume.path()).parent_path(), enter, fs::perm_options::add);
    const std::pair<unsigned, Calls> cases[] = {
        {0711, {}}, {0733, {"sync a"}}, {0755, {"flush above"}}};
    for (const auto& [mode, flushes] : cases) {
        fs::permissions(above, fs::perms(mode));
        EXPECT_EQ(run([&] {
                      int error = -1;
                      runAsOrdinaryUser([&] { error = makeFolder((above / "a").string()); });
                      return error;
                  }),
                  0);
        EXPECT_EQ(calls, flushes) << mode;
    }
}

TEST_F(DurableFiles, ReportAFolderThatMayNotBeThereAfterACrash) {
    const auto make = [&] { return makeFolder(folder.path("JPG/a/b")); };
    rule = always("flush a", EIO);
    EXPECT_EQ(run(make), EIO);
    rule = once("flush JPG", EINVAL);
    fs::remove_all(folder.path("JPG/a"));
    EXPECT_EQ(run(make), 0);
    rule = always("make b", ENOSPC);
    fs::remove_all(folder.path("JPG/a"));
    EXPECT_EQ(run(make), ENOSPC);
}

TEST_F(DurableFiles, TakeAFolderThatAnotherMakesMeanwhile) {
    rule = [&](const std::string& call) {
        if (call == "make b") folder.makeFolder("JPG/a/b");
        return 0;
    };
    EXPECT_EQ(run([&] { return makeFolder(folder.path("JPG/a/b")); }), 0);
}

TEST_F(DurableFiles, MakeNoFolderWhereSomethingElseIs) {
    fs::create_symlink("nowhere", folder.path("dangling"));
    fs::create_symlink("JPG", folder.path("toFolder"));
    EXPECT_EQ(makeFolder(source), EEXIST);
    EXPECT_EQ(makeFolder(source + "/deeper"), ENOTDIR);
    EXPECT_EQ(makeFolder(source + "/deeper/still"), ENOTDIR);
    EXPECT_EQ(makeFolder(folder.path("dangling")), EEXIST);
    EXPECT_EQ(makeFolder(folder.path("dangling/deeper")), EEXIST);
    EXPECT_EQ(makeFolder(folder.path("toFolder")), 0);
    EXPECT_EQ(makeFolder(folder.path("toFolder/deeper")), 0);
    EXPECT_TRUE(fs::is_directory(folder.path("JPG/deeper")));
    EXPECT_EQ(makeFolder(folder.path(std::string(300, 'x'))), ENAMETOOLONG);
    EXPECT_EQ(makeFolder("/"), 0);
}

}  // namespace bildkurier
