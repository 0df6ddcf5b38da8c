// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardToServer.h"
#include "SftpServerTest.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// A server that takes a film in slowly, for longer than a connection may take to come about.
class SftpSlowTest : public SftpServerTest {
protected:
    void SetUp() override {
        SftpServerTest::SetUp();
        if (IsSkipped()) return;
        store = storeOver(std::make_shared<ProcessCommandRunner>(), impatientClient());
        server->connection().slowDown(std::chrono::milliseconds(15), [this] { look(); });
    }

    void TearDown() override {
        if (server) server->connection().finished();  // so that nobody looks any more
    }

    /// Looks at the server while the film is on its way.
    void look() {
        std::error_code missing;
        if (fs::exists(server->path("FILM.MP4.part"))) partSeen = true;
        const auto size = fs::file_size(server->path("FILM.MP4"), missing);
        if (!missing && size != film.size()) halfSeen = true;
    }

    Tree card() const { return {{"FILM.MP4", film}}; }

    const std::string film = std::string(2'000'000, 'f') + "end";
    std::atomic<bool> partSeen = false;
    std::atomic<bool> halfSeen = false;  ///< under the final name
};

TEST_F(SftpSlowTest, IsNotGivenUpWhileItGoesOn) {
    const auto begin = std::chrono::steady_clock::now();
    const auto moved = bring("FILM.MP4", film);
    EXPECT_TRUE(moved) << moved.error().message;
    EXPECT_GT(std::chrono::steady_clock::now() - begin, patience);
    EXPECT_TRUE(partSeen);
    EXPECT_FALSE(halfSeen);
    EXPECT_TRUE(serversTree() == card());
    EXPECT_FALSE(fs::exists(staged()));
}

TEST_F(SftpSlowTest, GetsTheRestWithTheNextImportWhenTheConnectionBreaks) {
    CardToServer import(card(), store, server->root());
    // What is there, the folder, the name, then the upload.
    server->connection().cutNext({film.size() / 2, unlimited}, 3);
    EXPECT_EQ(import.import().failed, 1);
    EXPECT_TRUE(partSeen);
    EXPECT_FALSE(fs::exists(server->path("FILM.MP4")));
    EXPECT_EQ(import.import().done, 1);
    EXPECT_FALSE(halfSeen);
    EXPECT_TRUE(serversTree() == card());
    EXPECT_EQ(import.import().total, 0);
    EXPECT_EQ(tree(local.path("root")), Tree{});
}

}  // namespace
}  // namespace bildkurier
