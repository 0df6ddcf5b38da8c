// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardToServer.h"
#include "SftpServerTest.h"
#include "TemporaryVolume.h"

#include <filesystem>
#include <functional>
#include <regex>
#include <utility>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Changes what begins each line of a listing: permissions, links, owner and group.
class OddListingRunner final : public CommandRunner {
public:
    explicit OddListingRunner(std::string beginning) : beginning_(std::move(beginning)) {}

    CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::optional<std::string>& input) override {
        auto result = ProcessCommandRunner().run(program, arguments, input);
        const std::regex usual("\\n(-\\S{9} +\\S+) +\\S+ +\\S+");
        result.output = std::regex_replace(result.output, usual, "\n" + beginning_);
        return result;
    }

private:
    std::string beginning_;
};

class SftpImportTest : public SftpServerTest {
protected:
    std::shared_ptr<SFTPFileStore> storeThatLists(const std::string& beginning) {
        return storeOver(std::make_shared<OddListingRunner>(beginning));
    }

    const Tree card{{"IMG_0001.JPG", "one"},
                    {"IMG_0002.JPG", "the second"},
                    {"Übung [3] *.jpg", "three"},
                    {"clip.MP4", std::string(200'000, 'm')}};
};

TEST_F(SftpImportTest, LoadsACardAndThenNothing) {
    CardToServer import(card, store, server->url("photos/2024"));
    EXPECT_EQ(import.import().done, 4);
    EXPECT_EQ(tree(server->path("photos/2024")), card);
    EXPECT_EQ(import.import().total, 0);
    EXPECT_EQ(tree(server->path("photos/2024")), card);
    EXPECT_EQ(tree(local.path("root")), Tree{});
}

TEST_F(SftpImportTest, SortsByType) {
    CardToServer import(card, store, server->root());
    EXPECT_EQ(import.import({.byType = true}).done, 4);
    EXPECT_EQ(serversTree(), (Tree{{"JPG/", ""},
                                   {"JPG/IMG_0001.JPG", "one"},
                                   {"JPG/IMG_0002.JPG", "the second"},
                                   {"JPG/Übung [3] *.jpg", "three"},
                                   {"MP4/", ""},
                                   {"MP4/clip.MP4", card.at("clip.MP4")}}));
    EXPECT_EQ(import.import({.byType = true}).total, 0);
}

TEST_F(SftpImportTest, KeepsAnotherFileOfTheSameName) {
    fs::copy_file(local.write("other", "another picture"), server->path("IMG_0001.JPG"));
    server->handOver(server->path("IMG_0001.JPG"));
    CardToServer import({{"IMG_0001.JPG", "one"}}, store, server->root());
    EXPECT_EQ(import.import().done, 1);
    EXPECT_EQ(serversTree(),
              (Tree{{"IMG_0001.JPG", "another picture"}, {"IMG_0001_1.JPG", "one"}}));
}

TEST_F(SftpImportTest, ReplacesNoFileThatItCouldNotSeeForALostConnection) {
    fs::copy_file(local.write("other", "another picture"), server->path("IMG_0001.JPG"));
    server->handOver(server->path("IMG_0001.JPG"));
    int run = 0;
    const auto breaking = std::make_shared<SFTPFileStore>(
        std::make_shared<ProcessCommandRunner>(), "/usr/bin/sftp",
        [&] {
            // The keys, the folder, then the question whether the name is free.
            if (++run == 3) server->connection().cutNext({0, 0});
            return server->login();
        },
        local.url("root"));
    CardToServer import({{"IMG_0001.JPG", "one"}}, breaking, server->root());
    EXPECT_EQ(import.import().failed, 1);
    EXPECT_EQ(serversTree(), (Tree{{"IMG_0001.JPG", "another picture"}}));
    EXPECT_EQ(import.import().done, 1);
    EXPECT_EQ(serversTree(),
              (Tree{{"IMG_0001.JPG", "another picture"}, {"IMG_0001_1.JPG", "one"}}));
}

TEST_F(SftpImportTest, LoadsNothingTwiceBecauseAListingBrokeOff) {
    CardToServer import(card, store, server->root());
    const FolderLayout byType{.byType = true};
    EXPECT_EQ(import.import(byType).done, 4);
    const Tree full = serversTree();
    server->connection().finished();
    EXPECT_EQ(import.import(byType).total, 0);
    // They list one level each: the folder itself, and those for the types.
    const auto connections = server->connection().finished();
    ASSERT_EQ(connections.size(), 2U);
    for (std::size_t level = 0; level < connections.size(); ++level) {
        SCOPED_TRACE(level);
        server->connection().finished();
        server->connection().cutNext({unlimited, connections[level].toClient - 150}, level);
        const auto progress = import.import(byType);
        EXPECT_EQ(progress.done, 0);
        EXPECT_EQ(progress.failed, progress.total);
        ASSERT_GT(progress.total, 0);
        for (const std::string& line : import.log) {
            EXPECT_TRUE(line.starts_with("✗ ") &&
                        line.contains(": Damit nichts doppelt geladen wird, "))
                << line;
        }
        EXPECT_EQ(serversTree(), full);
        EXPECT_EQ(import.import(byType).total, 0);
    }
    EXPECT_EQ(serversTree(), full);
}

TEST_F(SftpImportTest, LoadsNothingTwiceIntoAFolderThatCannotBeListed) {
    constexpr auto writeOnly = fs::perms::owner_write | fs::perms::owner_exec;
    const FolderLayout byType{.byType = true};
    CardToServer import(card, store, server->root());
    EXPECT_EQ(import.import(byType).done, 4);
    fs::remove(server->path("MP4/clip.MP4"));
    server->makeFolder("lost+found");
    fs::permissions(server->path("lost+found"), fs::perms::none);
    fs::permissions(server->path("JPG"), writeOnly);
    for (const int missingElsewhere : {1, 0}) {
        const auto progress = import.import(byType);
        EXPECT_EQ(progress.done, missingElsewhere);
        EXPECT_EQ(progress.failed, 3);
        EXPECT_FALSE(import.log.front().starts_with("ℹ︎")) << import.log.front();
        EXPECT_TRUE(import.log.back().contains("muss sich der Ordner erst ganz auflisten lassen"))
            << import.log.back();
    }
    EXPECT_EQ(store->listing(server->root()).trouble, std::nullopt);

    fs::permissions(server->path("JPG"), fs::perms::owner_all);
    EXPECT_EQ(import.import(byType).total, 0);
    EXPECT_EQ(tree(server->path("JPG")), (Tree{{"IMG_0001.JPG", "one"},
                                               {"IMG_0002.JPG", "the second"},
                                               {"Übung [3] *.jpg", "three"}}));
    EXPECT_EQ(tree(server->path("MP4")), (Tree{{"clip.MP4", card.at("clip.MP4")}}));

    fs::permissions(server->path(""), writeOnly);
    const auto [keys, trouble] = store->listing(server->root());
    EXPECT_EQ(keys, FileKeys{});
    ASSERT_TRUE(trouble);
    EXPECT_TRUE(trouble->starts_with("Der Server verweigert den Zugriff (")) << *trouble;
    fs::permissions(server->path(""), fs::perms::owner_all);
    fs::permissions(server->path("lost+found"), fs::perms::owner_all);
}

TEST_F(SftpImportTest, KnowsFilesWhoseOwnersHaveBlanksInTheirNames) {
    CardToServer import(card, storeThatLists("$1 Anna Muster domain users"), server->root());
    EXPECT_EQ(import.import().done, 4);
    EXPECT_EQ(import.import().total, 0);
    EXPECT_EQ(serversTree(), card);
}

TEST_F(SftpImportTest, LeavesNothingBehindWhereItCannotReadListings) {
    ASSERT_TRUE(bring("IMG_0001.JPG", "one"));
    CardToServer import({{"IMG_0001.JPG", "one"}, {"IMG_0002.JPG", "two"}}, storeThatLists("file"),
                        server->root());
    EXPECT_EQ(import.import().failed, 2);
    EXPECT_EQ(import.log, (std::vector<std::string>{
                              "ℹ︎ IMG_0001.JPG existiert schon mit anderem Inhalt → gespeichert "
                              "als IMG_0001_1.JPG",
                              "✗ IMG_0001_1.JPG: Größe stimmt nach der Übertragung nicht",
                              "✗ IMG_0002.JPG: Größe stimmt nach der Übertragung nicht"}));
    EXPECT_EQ(serversTree(), (Tree{{"IMG_0001.JPG", "one"}}));
}

TEST_F(SftpImportTest, RefusesANameThatWouldBeACommand) {
    CardToServer import({{"IMG\n!touch x\n.JPG", "evil"}, {"b.JPG", "good"}}, store,
                        server->root());
    const auto progress = import.import();
    EXPECT_EQ(progress.done, 1);
    EXPECT_EQ(progress.failed, 1);
    EXPECT_EQ(serversTree(), (Tree{{"b.JPG", "good"}}));
}

TEST_F(SftpImportTest, EndsWhenTheFolderCannotBeMade) {
    fs::permissions(server->path(""), fs::perms::owner_read | fs::perms::owner_exec);
    CardToServer import(card, store, server->url("photos"));
    EXPECT_EQ(import.import().failed, 1);
    ASSERT_EQ(import.log.size(), 2U);
    EXPECT_TRUE(import.log[0].starts_with("Kann Ordner nicht anlegen: " + server->path("photos") +
                                          ": Ordner lässt sich nicht anlegen: Der Server "
                                          "verweigert den Zugriff ("))
        << import.log[0];
    EXPECT_EQ(import.log[1], "3 weitere Dateien wurden nicht mehr versucht und fehlen noch.");
}

TEST_F(SftpImportTest, IsMadeGoodByTheNextOneOnceTheObstacleIsGone) {
    constexpr auto readOnly = fs::perms::owner_read | fs::perms::owner_exec;
    const struct {
        std::string obstacle;
        std::function<void()> raise;
        std::function<void()> clear;
    } cases[] = {
        {"key refused", [&] { server->refuseKeys(); }, [&] { server->acceptKeys(); }},
        {"other host key", [&] { server->changeHostKey(); },
         [&] { fs::remove(server->knownHosts()); }},
        {"read-only folder", [&] { fs::permissions(server->path("read-only folder"), readOnly); },
         [&] { fs::permissions(server->path("read-only folder"), fs::perms::owner_all); }},
        {"no folder can be made", [&] { fs::permissions(server->path(""), readOnly); },
         [&] { fs::permissions(server->path(""), fs::perms::owner_all); }},
    };
    const Tree pictures{{"IMG_0001.JPG", "one"}};
    server->makeFolder("read-only folder");
    ASSERT_TRUE(store->fileExists(server->root()));
    for (const auto& [obstacle, raise, clear] : cases) {
        SCOPED_TRACE(obstacle);
        CardToServer import(pictures, store, server->url(obstacle));
        raise();
        const auto first = import.import();
        clear();
        EXPECT_EQ(first.done, 0);
        EXPECT_EQ(first.failed, 1);
        EXPECT_TRUE(!fs::exists(server->path(obstacle)) || tree(server->path(obstacle)).empty());
        EXPECT_EQ(import.import().done, 1);
        EXPECT_EQ(tree(server->path(obstacle)), pictures);
        EXPECT_EQ(import.import().total, 0);
    }
}

TEST_F(SftpImportTest, LoadsACardOntoAServerOfAnotherMaker) {
    using enum SshServer::Product;
    if (!SshServer::isInstalled(proFtpd))
        GTEST_SKIP() << "ein zweiter SFTP-Server fehlt (Paket proftpd-mod-crypto)";
    server = std::make_unique<SshServer>(proFtpd);
    const auto destination = server->url("photos/a b/2024");
    CardToServer import(card, store, destination);
    EXPECT_EQ(import.import({.byType = true}).done, 4) << import.log.back();
    EXPECT_EQ(import.import({.byType = true}).total, 0);
    EXPECT_EQ(tree(server->path("photos/a b/2024/JPG")), (Tree{{"IMG_0001.JPG", "one"},
                                                               {"IMG_0002.JPG", "the second"},
                                                               {"Übung [3] *.jpg", "three"}}));
    EXPECT_TRUE(store->isWritableDirectory(destination));
    const auto free = store->availableCapacity(destination);
    const auto here = LocalFileStore().availableCapacity(Url::file(destination.path));
    ASSERT_TRUE(free && here);
    EXPECT_NEAR(static_cast<double>(*free), static_cast<double>(*here),
                0.1 * static_cast<double>(*here));
    EXPECT_EQ(store->fileSize(destination.appending("MP4/clip.MP4")), 200'000);
    EXPECT_FALSE(store->fileExists(server->url("missing")));
}

TEST_F(SftpImportTest, SaysThatTheServerTakesNoMore) {
    server->limitFiles(1'000'000);
    const Tree files{{"a small.JPG", "one"}, {"big.JPG", std::string(3'000'000, 'x')}};
    CardToServer import(files, store, server->root());
    const auto progress = import.import();
    EXPECT_EQ(progress.done, 1);
    EXPECT_EQ(progress.failed, 1);
    EXPECT_TRUE(import.log.back().contains("✗ big.JPG: Übertragung fehlgeschlagen: "))
        << import.log.back();
    EXPECT_EQ(serversTree(), (Tree{{"a small.JPG", "one"}}));
    server->limitFiles({});
    EXPECT_EQ(import.import().done, 1);
    EXPECT_TRUE(serversTree() == files);
}

TEST_F(SftpImportTest, SaysThatTheServerIsFull) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "ein Volume einzuhängen braucht root";
    server = std::make_unique<SshServer>();  // knows the volumes of the moment it was started
    server->handOver(volume.path());
    fs::permissions(fs::path(volume.path()).parent_path(), fs::perms::all);
    Url full = server->root();
    full.path = volume.path();
    const std::string filler = volume.write("filler", std::string(600'000, 'f'));
    const Tree files{{"a small.JPG", "one"}, {"big.JPG", std::string(600'000, 'x')}};
    CardToServer import(files, store, full);
    const auto progress = import.import();
    EXPECT_EQ(progress.done, 1);
    EXPECT_EQ(progress.failed, 1);
    EXPECT_TRUE(import.log.back().contains("✗ big.JPG: Übertragung fehlgeschlagen: "))
        << import.log.back();
    fs::remove(filler);
    EXPECT_EQ(tree(volume.path()), (Tree{{"a small.JPG", "one"}}));
    EXPECT_EQ(import.import().done, 1);
    EXPECT_TRUE(tree(volume.path()) == files);
}

}  // namespace
}  // namespace bildkurier
