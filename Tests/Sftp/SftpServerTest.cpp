// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpServerTest.h"

#include "FileKey.h"
#include "HostKeyMismatch.h"
#include "OddNames.h"
#include "TemporaryVolume.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Removes the probe a moment before the store does, as another program's probe may.
class HastyRunner final : public CommandRunner {
public:
    CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::optional<std::string>& input) override {
        std::string script = input.value_or("");
        const auto removal = script.find("\nrm ");
        if (removal != std::string::npos)
            script.insert(removal, "\n-" + script.substr(removal + 1, script.size() - removal - 2));
        return ProcessCommandRunner().run(program, arguments, script);
    }
};

TEST_F(SftpServerTest, KnowsUmlautsWhereTheClientCannotPrintThem) {
    const auto client = local.write("client", "#!/bin/sh\nLC_ALL=C exec /usr/bin/sftp \"$@\"\n");
    fs::permissions(client, fs::perms::owner_all);
    const auto plainStore = storeOver(std::make_shared<ProcessCommandRunner>(), client);
    ASSERT_TRUE(plainStore->createDirectory(server->url("Übung")));
    const auto moved = plainStore->moveItem(Url::file(local.write("staged", "picture")),
                                            server->url("Übung/ä.jpg"));
    ASSERT_TRUE(moved) << moved.error().message;
    EXPECT_EQ(plainStore->existingFileKeys(server->root()),
              (FileKeys{"ä.jpg|7", "\\303\\244.jpg|7"}));
    EXPECT_EQ(serversTree(), (Tree{{"Übung/", ""}, {"Übung/ä.jpg", "picture"}}));
}

TEST_F(SftpServerTest, TakesEveryName) {
    std::vector<std::string> troubles(oddNames.size());
    std::atomic<std::size_t> begun = 0;
    const auto bringNext = [&] {
        for (std::size_t n = begun++; n < oddNames.size(); n = begun++) {
            const auto file =
                local.write("staged " + std::to_string(n), "picture of " + oddNames[n]);
            const auto moved = store->moveItem(Url::file(file), server->url(oddNames[n]));
            if (!moved) troubles[n] = moved.error().message;
        }
    };
    // Most of the time is spent on waiting for connections.
    constexpr std::size_t count = 8;
    std::vector<std::jthread> threads;
    threads.reserve(count);
    while (threads.size() < count) threads.emplace_back(bringNext);
    threads.clear();
    EXPECT_EQ(troubles, std::vector<std::string>(oddNames.size()));

    Tree expected;
    FileKeys keys;
    for (const auto& name : oddNames) {
        expected[name] = "picture of " + name;
        keys.insert(fileKey(name, std::ssize(expected[name])));
    }
    EXPECT_EQ(serversTree(), expected);
    // What looks like an escape of the client's might be one.
    keys.insert(fileKey("ü", std::ssize(expected["\\303\\274"])));
    EXPECT_EQ(store->existingFileKeys(server->root()), keys);
}

TEST_F(SftpServerTest, SeesEightLevels) {
    std::string folder;
    for (int level = 1; level <= 9; ++level) {
        std::ofstream(server->path(folder + "file" + std::to_string(level))) << "x";
        folder += "d/";
        server->makeFolder(folder);
    }
    EXPECT_EQ(store->existingFileKeys(server->root()),
              (FileKeys{"file1|1", "file2|1", "file3|1", "file4|1", "file5|1", "file6|1", "file7|1",
                        "file8|1"}));
}

TEST_F(SftpServerTest, MakesNineLevels) {
    const auto deep = server->url("1/2/3/4/5/6/7/8/9");
    ASSERT_TRUE(store->createDirectory(deep));
    ASSERT_TRUE(bring("1/2/3/4/5/6/7/8/9/IMG.JPG", "picture"));
    EXPECT_EQ(store->fileSize(deep.appending("IMG.JPG")), 7);
}

TEST_F(SftpServerTest, ForgesNoKeysFromNamesWithLineBreaks) {
    std::ofstream(server->path("x\n-rw-r--r-- 1 0 0 9 May 9 10:00 IMG_2.JPG")) << "x";
    std::ofstream(server->path("y\nsftp> -ls -ln")) << "x";
    ASSERT_TRUE(bring("IMG_1.JPG", "picture"));
    const auto keys = store->existingFileKeys(server->root());
    EXPECT_FALSE(keys.contains("img_2.jpg|9"));
    EXPECT_TRUE(keys.contains("img_1.jpg|7"));
}

TEST_F(SftpServerTest, FindsAReadOnlyFolderNotWritable) {
    server->makeFolder("locked");
    ASSERT_TRUE(store->isWritableDirectory(server->url("locked")));
    fs::permissions(server->path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(store->isWritableDirectory(server->url("locked")));
    EXPECT_FALSE(store->isWritableDirectory(server->url("missing")));
    const auto made = store->createDirectory(server->url("locked/deeper"));
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.starts_with("Ordner lässt sich nicht anlegen: "));
    const auto moved = bring("locked/IMG_1.JPG", "picture");
    ASSERT_FALSE(moved);
    EXPECT_TRUE(moved.error().message.starts_with("Übertragung fehlgeschlagen: "));
    EXPECT_TRUE(moved.error().message.contains("Permission denied")) << moved.error().message;
    EXPECT_TRUE(fs::exists(staged()));
    EXPECT_EQ(serversTree(), (Tree{{"locked/", ""}}));
}

TEST_F(SftpServerTest, SaysThatThereIsNoRoomForAFolder) {
    const TemporaryVolume volume(1'000'000, {"mkfs.ext2", "-q", "-N", "16"});
    if (!volume.isMounted()) GTEST_SKIP() << "ein Volume einzuhängen braucht root und loop";
    server = std::make_unique<SshServer>();  // knows the volumes of the moment it was started
    fs::permissions(fs::path(volume.path()).parent_path(), fs::perms::all);
    for (int n = 0; std::ofstream(volume.path() + fmt::format("/{}", n)); ++n) ASSERT_LT(n, 100);
    server->handOver(volume.path());
    Url full = server->root();
    full.path = volume.path();
    const auto made = store->createDirectory(full.appending("a/b"));
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().message,
              fmt::format("Ordner lässt sich nicht anlegen: Der Server kann den Ordner nicht "
                          "anlegen; vielleicht liegt dort eine Datei dieses Namens, oder es ist "
                          "kein Platz mehr (remote mkdir \"{}/a\": Failure)",
                          full.path));
}

TEST_F(SftpServerTest, SaysThatAFileMayLieWhereAFolderIsToBe) {
    std::ofstream(server->path("datei")) << "x";
    const auto made = store->createDirectory(server->url("datei/a"));
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.contains("vielleicht liegt dort eine Datei dieses Namens"))
        << made.error().message;
}

TEST_F(SftpServerTest, ListsAFolderWithSlashesBehindItsName) {
    server->makeFolder("JPG");
    std::ofstream(server->path("JPG/IMG_1.JPG")) << "x";
    const auto keys = store->existingFileKeys(server->root());
    ASSERT_EQ(keys.size(), 1U);
    for (const std::string slashes : {"/", "//", "///"}) {
        Url folder = server->root();
        folder.path += slashes;
        EXPECT_EQ(store->existingFileKeys(folder), keys) << slashes;
    }
}

TEST_F(SftpServerTest, LeavesNoProbe) {
    ASSERT_TRUE(store->isWritableDirectory(server->root()));
    EXPECT_EQ(serversTree(), Tree{});
    EXPECT_EQ(tree(local.path("root")), Tree{});
}

TEST_F(SftpServerTest, MeasuresTheFreeSpace) {
    const auto free = store->availableCapacity(server->root());
    const auto here = LocalFileStore().availableCapacity(Url::file(server->path("")));
    ASSERT_TRUE(free && here);
    EXPECT_NEAR(static_cast<double>(*free), static_cast<double>(*here),
                0.1 * static_cast<double>(*here));
}

TEST_F(SftpServerTest, SaysThatTheKeyIsRefused) {
    server->refuseKeys();
    const auto made = store->createDirectory(server->url("x"));
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.contains("Permission denied (publickey"))
        << made.error().message;
    EXPECT_FALSE(store->fileExists(server->root()));
    EXPECT_EQ(store->existingFileKeys(server->root()), FileKeys{});
    EXPECT_FALSE(bring("IMG_1.JPG", "picture"));
    EXPECT_TRUE(fs::exists(staged()));
}

TEST_F(SftpServerTest, RecordsANewServerAndRefusesItsOtherKey) {
    EXPECT_FALSE(fs::exists(server->knownHosts()));
    ASSERT_TRUE(store->createDirectory(server->url("x")));
    ASSERT_TRUE(fs::exists(server->knownHosts()));
    const auto recorded = fs::file_size(server->knownHosts());
    ASSERT_TRUE(store->createDirectory(server->url("x")));
    EXPECT_EQ(fs::file_size(server->knownHosts()), recorded);

    server->changeHostKey();
    const auto refused = store->createDirectory(server->url("y"));
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.error().message.contains(hostKeyMismatch)) << refused.error().message;
    EXPECT_FALSE(bring("IMG_1.JPG", "picture"));
    EXPECT_TRUE(fs::exists(staged()));
    EXPECT_EQ(serversTree(), (Tree{{"x/", ""}}));

    fs::remove(server->knownHosts());
    EXPECT_TRUE(store->createDirectory(server->url("y")));
}

TEST_F(SftpServerTest, SaysThatNobodyListens) {
    Url nowhere = server->root();
    nowhere.port = 1;
    const auto made = store->createDirectory(nowhere);
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.starts_with(
        "Ordner lässt sich nicht anlegen: Der Rechner nimmt an diesem Port keine Verbindung an ("))
        << made.error().message;
    EXPECT_TRUE(made.error().message.contains("Connection refused")) << made.error().message;
}

TEST_F(SftpServerTest, TakesALargeFile) {
    std::string picture(5'000'000, '\0');
    for (std::size_t i = 0; i < picture.size(); ++i)
        picture[i] = static_cast<char>(i * 31 + i / 977);
    ASSERT_TRUE(bring("big", picture));
    EXPECT_TRUE(serversTree() == (Tree{{"big", picture}}));
}

TEST_F(SftpServerTest, ReplacesWhatABrokenUploadLeft) {
    std::ofstream(server->path("IMG_1.JPG.part")) << "much longer than the picture is";
    server->handOver(server->path("IMG_1.JPG.part"));
    ASSERT_TRUE(bring("IMG_1.JPG", "picture"));
    EXPECT_EQ(serversTree(), (Tree{{"IMG_1.JPG", "picture"}}));
}

TEST_F(SftpServerTest, TakesTheLongestNames) {
    Tree expected;
    for (const std::size_t length : {250U, 251U, 255U}) {
        const auto name = std::string(length - 4, 'n') + ".JPG";
        const auto moved = bring(name, "picture");
        EXPECT_TRUE(moved) << length << ": " << moved.error().message;
        expected[name] = "picture";
    }
    EXPECT_EQ(serversTree(), expected);
}

TEST_F(SftpServerTest, ProbesFromSeveralThreads) {
    std::vector<std::jthread> threads;
    std::vector<char> writable(4);
    threads.reserve(writable.size());
    for (auto& answer : writable)
        threads.emplace_back([&] { answer = store->isWritableDirectory(server->root()) ? 1 : 0; });
    threads.clear();
    EXPECT_EQ(writable, std::vector<char>(4, 1));
    EXPECT_EQ(serversTree(), Tree{});
}

TEST_F(SftpServerTest, FindsAFolderWritableWhoeverRemovesTheProbe) {
    const auto hasty = storeOver(std::make_shared<HastyRunner>());
    EXPECT_TRUE(hasty->isWritableDirectory(server->root()));
    EXPECT_EQ(serversTree(), Tree{});
}

TEST_F(SftpServerTest, MayBeUsedFromSeveralThreads) {
    std::vector<std::jthread> threads;
    std::vector<bool> outcomes(4);
    threads.reserve(outcomes.size());
    std::mutex mutex;
    for (std::size_t n = 0; n < outcomes.size(); ++n) {
        threads.emplace_back([&, n] {
            const auto name = std::to_string(n);
            const auto moved =
                store->moveItem(Url::file(local.write("staged " + name, name)), server->url(name));
            const std::lock_guard lock(mutex);
            outcomes[n] = moved.has_value();
        });
    }
    threads.clear();
    EXPECT_EQ(outcomes, std::vector<bool>(4, true));
    EXPECT_EQ(serversTree(), (Tree{{"0", "0"}, {"1", "1"}, {"2", "2"}, {"3", "3"}}));
}

}  // namespace
}  // namespace bildkurier
