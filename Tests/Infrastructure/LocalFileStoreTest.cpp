// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "LocalFileStore.h"
#include "MarkedFolder.h"
#include "OrdinaryUser.h"
#include "PrivateMounts.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"
#include "Tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

class LocalFileStoreTest : public testing::Test {
protected:
    std::string messageOf(const Result<>& result) { return result ? "" : result.error().message; }

    const TemporaryFolder folder;
    LocalFileStore store;
};

}  // namespace

TEST_F(LocalFileStoreTest, StagesInAHiddenFolderOfTheDestination) {
    EXPECT_EQ(store.stagingDirectory(Url::file("/media/fotos")),
              Url::file("/media/fotos/.bildkurier-tmp"));
    EXPECT_EQ(store.stagingDirectory(Url::file("/media/fotos/")),
              Url::file("/media/fotos/.bildkurier-tmp"));
    EXPECT_EQ(store.stagingDirectory(Url::file("/")), Url::file("/.bildkurier-tmp"));
}

TEST_F(LocalFileStoreTest, HasNoKeysForLinks) {
    const TemporaryFolder elsewhere;
    elsewhere.write("secret.jpg", "x");
    folder.write("IMG_1.JPG", "one");
    fs::create_symlink(folder.path("IMG_1.JPG"), folder.path("link.jpg"));
    fs::create_symlink(elsewhere.path(), folder.path("linked"));
    EXPECT_EQ(store.existingFileKeys(folder.url()), FileKeys{"img_1.jpg|3"});
}

TEST_F(LocalFileStoreTest, FindsTheKeysOfADestinationThatIsALink) {
    folder.write("fotos/IMG_1.JPG", "one");
    fs::create_symlink("fotos", folder.path("link"));
    EXPECT_EQ(store.existingFileKeys(folder.url("link")), FileKeys{"img_1.jpg|3"});
}

TEST_F(LocalFileStoreTest, KnowsAFolderByWhateverPathALinkGivesIt) {
    const Url bilder = store.resolved(Url::file(folder.makeFolder("fotos/bilder")));
    fs::create_symlink("fotos", folder.path("link"));
    for (const char* path : {"fotos/bilder", "link/bilder", "link/bilder/", "link/../fotos/bilder"})
        EXPECT_EQ(store.resolved(folder.url(path)), bilder) << path;
    EXPECT_EQ(store.resolved(folder.url("link/bilder/noch/keiner")),
              bilder.appending("noch/keiner"));
    EXPECT_EQ(store.resolved(Url::file("/")), Url::file("/"));
    EXPECT_EQ(store.resolved(Url::file(std::string("/a\0b", 4))).scheme, "file");
}

TEST_F(LocalFileStoreTest, FindsTheKeysAroundAFolderThatMayNotBeRead) {
    folder.write("closed/IMG_1.JPG", "one");
    folder.write("open/IMG_2.JPG", "two");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder.path("closed"), fs::perms::none);
    runAsOrdinaryUser([&] {
        EXPECT_EQ(store.existingFileKeys(folder.url()), FileKeys{"img_2.jpg|3"});
        EXPECT_EQ(store.existingFileKeys(folder.url("closed")), FileKeys{});
    });
    fs::permissions(folder.path("closed"), fs::perms::owner_all);
}

TEST_F(LocalFileStoreTest, NamesTheFoldersThatMayNotBeRead) {
    folder.write("open/b/IMG_1.JPG", "one");
    folder.write("open/a/IMG_2.JPG", "two");
    folder.write("open/IMG_3.JPG", "three");
    folder.write(".hidden/IMG_4.JPG", "four");
    fs::permissions(folder.path(), fs::perms::all);
    for (const char* closed : {"open/a", "open/b", ".hidden"})
        fs::permissions(folder.path(closed), fs::perms::none);
    runAsOrdinaryUser([&] {
        const auto listing = store.files(folder.url());
        ASSERT_TRUE(listing);
        ASSERT_EQ(listing->files.size(), 1U);
        EXPECT_EQ(listing->files[0].place.path, "open/IMG_3.JPG");
        EXPECT_EQ(listing->unreadable, (std::vector<std::string>{"open/a", "open/b"}));
        EXPECT_FALSE(store.files(folder.url("open/a")));
    });
    EXPECT_EQ(store.files(folder.url("none"))->files.size(), 0U);
    for (const char* closed : {"open/a", "open/b", ".hidden"})
        fs::permissions(folder.path(closed), fs::perms::owner_all);
}

TEST_F(LocalFileStoreTest, MarksTheFolderInWhichFilesLie) {
    folder.write("karte/IMG_1.JPG", "x");
    fs::create_directory_symlink(folder.path("karte"), folder.path("link"));
    const auto mark = markOf(openFolder(folder.path("karte"), O_PATH));
    ASSERT_TRUE(mark);
    for (const char* name : {"karte", "link"}) {
        const auto listing = store.files(folder.url(name));
        ASSERT_TRUE(listing);
        ASSERT_EQ(listing->files.size(), 1U);
        EXPECT_EQ(listing->files[0].place,
                  (PlacedFile{.folder = folder.url(name), .path = "IMG_1.JPG", .mark = mark}));
    }
}

TEST_F(LocalFileStoreTest, FindsTheKeysOfManyFoldersAndFiles) {
    FileKeys keys;
    for (int n = 0; n < 3'000; ++n) {
        const std::string name = "IMG_" + std::to_string(n) + ".JPG";
        folder.write(std::to_string(n % 70) + "/" + name, std::to_string(n));
        keys.insert(fileKey(name, std::ssize(std::to_string(n))));
    }
    EXPECT_EQ(store.existingFileKeys(folder.url()), keys);
}

TEST_F(LocalFileStoreTest, CountsALinkThatLeadsNowhereAsExisting) {
    fs::create_symlink("nowhere", folder.path("IMG_1.JPG"));
    fs::create_symlink("IMG_2.JPG", folder.path("IMG_2.JPG"));
    EXPECT_TRUE(store.fileExists(folder.url("IMG_1.JPG")));
    EXPECT_TRUE(store.fileExists(folder.url("IMG_2.JPG")));
    EXPECT_EQ(store.freeName("IMG_1.JPG", folder.url()), "IMG_1_1.JPG");
}

TEST_F(LocalFileStoreTest, MeasuresFilesOnly) {
    fs::resize_file(folder.write("movie.mov", ""), 5'000'000'000);
    fs::create_symlink("movie.mov", folder.path("link"));
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(store.fileSize(folder.url("movie.mov")), 5'000'000'000);
    EXPECT_EQ(store.fileSize(folder.url("link")), std::nullopt);
    EXPECT_EQ(store.fileSize(folder.url("pipe")), std::nullopt);
}

TEST_F(LocalFileStoreTest, KnowsFoldersIntoWhichItMayNotWrite) {
    fs::permissions(folder.path(), fs::perms::all);
    const struct {
        std::string name;
        mode_t permissions;
        bool writable;
    } cases[] = {
        {"all", 0777, true},        {"readOnly", 0555, false}, {"notSearchable", 0666, false},
        {"writeOnly", 0333, false}, {"none", 0, false},
    };
    for (const auto& [name, permissions, writable] : cases)
        ASSERT_EQ(::chmod(folder.makeFolder(name).c_str(), permissions), 0);
    fs::create_symlink("all", folder.path("link"));
    runAsOrdinaryUser([&] {
        for (const auto& [name, permissions, writable] : cases)
            EXPECT_EQ(store.isWritableDirectory(folder.url(name)), writable) << name;
        EXPECT_TRUE(store.isWritableDirectory(folder.url("link")));
        EXPECT_EQ(messageOf(store.createDirectory(folder.url("readOnly/new"))),
                  "Die Zugriffsrechte reichen nicht aus");
    });
}

TEST_F(LocalFileStoreTest, KnowsAVolumeThatCanOnlyBeRead) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    EXPECT_TRUE(store.isWritableDirectory(volume.url("")));
    const std::string staged = volume.write("staged", "x");
    ASSERT_EQ(::mount(nullptr, volume.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_FALSE(store.isWritableDirectory(volume.url("")));
    EXPECT_EQ(messageOf(store.createDirectory(volume.url("new"))),
              "Das Volume lässt sich nur lesen");
    EXPECT_EQ(messageOf(store.moveItem(Url::file(staged), volume.url("new"))),
              "Das Volume lässt sich nur lesen");
}

TEST_F(LocalFileStoreTest, TellsTheFreeBytesOfAVolume) {
    const TemporaryVolume volume(4'096'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    EXPECT_EQ(store.availableCapacity(volume.url("")), 4'096'000);
    const std::string file = volume.write("a/file", std::string(409'600, 'x'));
    EXPECT_EQ(store.availableCapacity(volume.url("")), 4'096'000 - 409'600);
    EXPECT_EQ(store.availableCapacity(volume.url("a")), 4'096'000 - 409'600);
    EXPECT_EQ(store.availableCapacity(Url::file(file)), 4'096'000 - 409'600);
    EXPECT_EQ(store.availableCapacity(volume.url("b")), std::nullopt);
}

TEST_F(LocalFileStoreTest, DoesNotPromiseWhatAVolumeReservesForTheSystem) {
    const TemporaryVolume volume(16'000'000, {"mkfs.ext4", "-q", "-m", "20"});
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    struct statvfs facts{};
    ASSERT_EQ(::statvfs(volume.path().c_str(), &facts), 0);
    ASSERT_LT(facts.f_bavail, facts.f_bfree);
    EXPECT_EQ(store.availableCapacity(volume.url("")), facts.f_bavail * facts.f_frsize);
}

TEST_F(LocalFileStoreTest, KnowsNoCapacityOfAVolumeWithoutBlocks) {
    EXPECT_EQ(store.availableCapacity(Url::file("/proc")), std::nullopt);
}

TEST_F(LocalFileStoreTest, TakesDisksForLocal) {
    EXPECT_FALSE(store.isNetworkVolume(folder.url()));
    EXPECT_FALSE(store.isNetworkVolume(Url::file("/")));
    EXPECT_FALSE(store.isNetworkVolume(Url::file("")));
}

TEST_F(LocalFileStoreTest, SaysWhyAFileCannotBeMoved) {
    folder.write("staged", "picture");
    folder.write("IMG_1.JPG", "old");
    const Url staged = folder.url("staged");
    const struct {
        std::string target;
        std::string message;
    } cases[] = {
        {"IMG_1.JPG", "Eine Datei oder ein Ordner dieses Namens existiert schon"},
        {"missing/a", "Die Datei oder der Ordner ist nicht vorhanden"},
        {"IMG_1.JPG/a", "Im Pfad steht eine Datei, wo ein Ordner sein müsste"},
        {std::string(256, 'x'), "Der Name ist für das Volume zu lang"},
        {std::string("IMG_2.JPG\0.exe", 14), "Die Datei oder der Ordner ist nicht vorhanden"},
    };
    for (const auto& [target, message] : cases)
        EXPECT_EQ(messageOf(store.moveItem(staged, folder.url(target))), message) << target;
    EXPECT_EQ(messageOf(store.moveItem(folder.url("gone"), folder.url("a"))),
              "Die Datei oder der Ordner ist nicht vorhanden");
    EXPECT_EQ(tree(folder.path()), (Tree{{"staged", "picture"}, {"IMG_1.JPG", "old"}}));
}

TEST_F(LocalFileStoreTest, SaysWhyAFolderCannotBeMade) {
    folder.write("file", "x");
    EXPECT_EQ(messageOf(store.createDirectory(folder.url("file"))),
              "Eine Datei oder ein Ordner dieses Namens existiert schon");
    EXPECT_EQ(messageOf(store.createDirectory(folder.url("file/deeper"))),
              "Im Pfad steht eine Datei, wo ein Ordner sein müsste");
    EXPECT_EQ(messageOf(store.createDirectory(Url::file(""))),
              "Die Datei oder der Ordner ist nicht vorhanden");
}

TEST_F(LocalFileStoreTest, TakesNamesUpToTheLongest) {
    const std::string name(255, 'n');
    ASSERT_TRUE(store.createDirectory(folder.url(name)));
    folder.write("staged", "picture");
    ASSERT_TRUE(store.moveItem(folder.url("staged"), folder.url(name + "/" + name)));
    EXPECT_EQ(tree(folder.path()), (Tree{{name + "/", ""}, {name + "/" + name, "picture"}}));
    EXPECT_FALSE(store.fileExists(folder.url(name + "n")));
}

TEST_F(LocalFileStoreTest, FindsNothingUnderAPathThatNoVolumeCanHold) {
    folder.write("file", "x");
    const Url url = folder.url(std::string("file\0", 5));
    EXPECT_FALSE(store.fileExists(url));
    EXPECT_EQ(store.fileSize(url), std::nullopt);
    store.removeItem(url);
    EXPECT_EQ(tree(folder.path()), (Tree{{"file", "x"}}));
}

TEST_F(LocalFileStoreTest, LetsOneOfManyHaveAName) {
    constexpr int rivals = 8;
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> winners = 0;
        {
            std::vector<std::jthread> threads;
            for (int n = 0; n < rivals; ++n) {
                const Url staged = Url::file(folder.write("staged" + std::to_string(n), "x"));
                threads.emplace_back([&, staged] {
                    if (!store.createDirectory(folder.url("a/b"))) return;
                    if (store.moveItem(staged, folder.url("a/b/IMG_1.JPG"))) ++winners;
                });
            }
        }
        EXPECT_EQ(winners, 1);
        EXPECT_EQ(store.existingFileKeys(folder.url("a")).size(), 1);
        store.removeItem(folder.url("a"));
    }
}

TEST_F(LocalFileStoreTest, RemovesLinksButNotWhatTheyLeadTo) {
    const TemporaryFolder elsewhere;
    elsewhere.write("a/file", "x");
    const Tree untouched = tree(elsewhere.path());
    folder.makeFolder("staging");
    fs::create_symlink(elsewhere.path(), folder.path("staging/toFolder"));
    fs::create_symlink(elsewhere.path("a/file"), folder.path("staging/toFile"));
    fs::create_symlink(elsewhere.path(), folder.path("link"));
    store.removeItem(folder.url("link/"));
    store.removeItem(folder.url("staging"));
    EXPECT_EQ(tree(folder.path()), Tree{});
    EXPECT_EQ(tree(elsewhere.path()), untouched);
}

TEST_F(LocalFileStoreTest, RemovesNothingThroughALinkThatTakesAFoldersPlace) {
    const TemporaryFolder elsewhere;
    elsewhere.write("b/precious", "x");
    folder.write("staging/b/file", "x");
    const Tree untouched = tree(elsewhere.path());
    const auto swap = [&](const seccomp_data& call) {
        if (pathArgument(call) == "b") {
            fs::rename(folder.path("staging/b"), folder.path("away"));
            fs::create_symlink(elsewhere.path("b"), folder.path("staging/b"));
        }
        return 0;
    };
    const bool filtered =
        runFiltered({SYS_openat}, swap, [&] { store.removeItem(folder.url("staging")); });
    if (!filtered) GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_EQ(tree(elsewhere.path()), untouched);
    EXPECT_TRUE(fs::exists(folder.path("away/file")));
}

TEST_F(LocalFileStoreTest, IgnoresWhatCannotBeRemoved) {
    folder.write("closed/file", "x");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder.path("closed"), fs::perms::owner_write, fs::perm_options::remove);
    runAsOrdinaryUser([&] { store.removeItem(folder.url("closed")); });
    EXPECT_EQ(tree(folder.path()), (Tree{{"closed/", ""}, {"closed/file", "x"}}));
}

TEST_F(LocalFileStoreTest, RemovesWhatCanBeBesideWhatCannot) {
    for (const char* name : {"a", "b", "c"})
        folder.write(std::string("staging/") + name + "/file", "x");
    fs::permissions(folder.path(), fs::perms::all);
    for (const char* path : {"staging", "staging/a", "staging/b", "staging/c"})
        fs::permissions(folder.path(path), fs::perms::all);
    fs::permissions(folder.path("staging/b"), fs::perms::owner_all);
    runAsOrdinaryUser([&] { store.removeItem(folder.url("staging")); });
    if (!fs::exists(folder.path("staging"))) GTEST_SKIP() << "nothing can be kept from this user";
    EXPECT_EQ(tree(folder.path()),
              (Tree{{"staging/", ""}, {"staging/b/", ""}, {"staging/b/file", "x"}}));
}

TEST_F(LocalFileStoreTest, NeverRemovesTheWholeComputer) {
    int removals = 0;
    const auto refuse = [&](const seccomp_data&) {
        ++removals;
        return EPERM;
    };
    for (const auto root : {"/", "//", ""}) {
        const bool filtered = runFiltered({SYS_unlinkat, SYS_unlink, SYS_rmdir}, refuse,
                                          [&] { store.removeItem(Url::file(root)); });
        if (!filtered) GTEST_SKIP() << "the kernel lets no calls be filtered";
        EXPECT_EQ(removals, 0) << root;
    }
}

TEST_F(LocalFileStoreTest, RespectsAVolumeThatDoesNotTellCasesApart) {
    if (!mountPrivately()) GTEST_SKIP() << "mounting a volume takes root";
    const std::string card = folder.makeFolder("volume");
    const CardLikeVolume volume(card, folder.makeFolder("backing"));
    if (!volume.isMounted()) GTEST_SKIP() << "takes a kernel with file systems in user space";
    const Url jpg = folder.url("volume/JPG");
    ASSERT_TRUE(store.createDirectory(jpg));
    const Url staged = Url::file(folder.write("volume/staged", "new"));
    folder.write("volume/JPG/img_1.jpg", "old");
    EXPECT_EQ(store.freeName("IMG_1.JPG", jpg), "IMG_1_1.JPG");
    EXPECT_FALSE(store.moveItem(staged, jpg.appending("IMG_1.JPG")));
    EXPECT_EQ(tree(jpg.path), (Tree{{"img_1.jpg", "old"}}));
    EXPECT_TRUE(store.moveItem(staged, jpg.appending("IMG_1_1.JPG")));
    EXPECT_EQ(store.existingFileKeys(jpg), (FileKeys{"img_1.jpg|3", "img_1_1.jpg|3"}));
}

/// Lays a table over the kernel's in which the volume of a folder is one of NFS.
TEST_F(LocalFileStoreTest, AsksTheMountTableForNetworkVolumes) {
    folder.write("JPG/IMG_1.JPG", "one");
    struct statx facts{};
    ASSERT_EQ(::statx(AT_FDCWD, folder.path().c_str(), 0, STATX_MNT_ID, &facts), 0);
    const std::string table = folder.write(
        "table", std::to_string(facts.stx_mnt_id) + " 1 0:9 / / rw - nfs4 nas:/fotos rw\n");
    const std::string kernelTable = "/proc/" + std::to_string(::getpid()) + "/mountinfo";
    if (::mount(table.c_str(), kernelTable.c_str(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "cannot mount a file here";
    const bool isNetwork = store.isNetworkVolume(folder.url("JPG"));
    const bool isMissingOne = store.isNetworkVolume(folder.url("missing"));
    const FileKeys keys = store.existingFileKeys(folder.url("JPG"));
    ASSERT_EQ(::umount2(kernelTable.c_str(), MNT_DETACH), 0);
    EXPECT_TRUE(isNetwork);
    EXPECT_FALSE(isMissingOne);
    EXPECT_EQ(keys, FileKeys{"img_1.jpg|3"});
    EXPECT_FALSE(store.isNetworkVolume(folder.url("JPG")));
}

}  // namespace bildkurier
