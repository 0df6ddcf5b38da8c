// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpServerTest.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

class SftpCutTest : public SftpServerTest {
protected:
    std::string stagedContents() const {
        std::ifstream stream(staged(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// What passes when all goes well, for the upload alone.
    Traffic wholeUpload() {
        server->connection().finished();
        const auto script = "put \"" + local.write("staged", picture) + "\" \"" +
                            server->path("IMG_1.JPG.part") + "\"\nrename \"" +
                            server->path("IMG_1.JPG.part") + "\" \"" + server->path("IMG_1.JPG") +
                            "\"\n";
        const auto result = tellClient(script);
        EXPECT_EQ(result.status, 0) << result.output;
        fs::remove(server->path("IMG_1.JPG"));
        return server->connection().finished().back();
    }

    /// Uploads with a connection that breaks, then looks whether all is safe, and goes on.
    /// Answers whether the file had its final name although the upload seemed to fail.
    bool survives() {
        const auto moved = bring("IMG_1.JPG", picture);
        server->connection().finished();
        auto there = serversTree();
        const bool arrived = there.contains("IMG_1.JPG");
        EXPECT_TRUE(!arrived || there["IMG_1.JPG"] == picture);
        EXPECT_EQ(moved.has_value(), !fs::exists(staged()));
        if (moved) {
            EXPECT_TRUE(arrived);
        } else {
            EXPECT_TRUE(stagedContents() == picture);
        }
        const auto keys = store->existingFileKeys(server->root());
        EXPECT_TRUE(keys.contains(fileKey("IMG_1.JPG", std::ssize(picture))) ||
                    bring("IMG_1.JPG", picture));
        EXPECT_TRUE(serversTree()["IMG_1.JPG"] == picture);
        fs::remove(server->path("IMG_1.JPG"));
        fs::remove(server->path("IMG_1.JPG.part"));
        return arrived && !moved;
    }

    const std::string picture = std::string(300'000, 'x') + "end";
};

TEST_F(SftpCutTest, LosesNothingWhenTheConnectionBreaksOnTheWayThere) {
    const auto whole = wholeUpload().toServer;
    // Before and during the login, in the file, and round the commands behind it.
    for (const auto limit : {std::size_t{0}, std::size_t{2'000}, whole / 4, whole * 3 / 4,
                             whole - 400, whole - 300, whole - 200, whole - 100}) {
        SCOPED_TRACE(limit);
        server->connection().cutNext({limit, unlimited});
        survives();
    }
}

TEST_F(SftpCutTest, LosesNothingWhenTheConnectionBreaksOnTheWayBack) {
    constexpr std::size_t cuts = 8;
    const auto whole = wholeUpload();
    for (std::size_t n = 0; n < cuts; ++n) {
        SCOPED_TRACE(n);
        server->connection().cutNext({unlimited, whole.toClient * n / cuts});
        survives();
    }
}

TEST_F(SftpCutTest, LosesNothingWhenTheServerDiesDuringAnUpload) {
    const auto whole = wholeUpload();
    for (const auto part : {2, 4, 6}) {
        SCOPED_TRACE(part);
        server->connection().killNext(
            {whole.toServer * static_cast<std::size_t>(part) / 8, unlimited});
        survives();
    }
}

TEST_F(SftpCutTest, TakesAFileForLoadedWhoseRenameWasNotAnswered) {
    const auto whole = wholeUpload();
    bool unanswered = false;
    // The answer to the rename lies somewhere in the last bytes, behind it the farewell.
    for (const std::size_t step : {20U, 7U}) {
        for (std::size_t back = step; back <= 300 && !unanswered; back += step) {
            server->connection().cutNext({unlimited, whole.toClient - back});
            unanswered = survives();
        }
    }
    EXPECT_TRUE(unanswered);
}

TEST_F(SftpCutTest, KeepsTheFileWhenTheSizeCannotBeAsked) {
    const auto moved = [this] {
        const auto runner = std::make_shared<ProcessCommandRunner>();
        int runs = 0;
        SFTPFileStore breaking(
            runner, "/usr/bin/sftp",
            [&] {
                if (++runs == 2) server->connection().cutNext({0, 0});
                return server->login();
            },
            local.url("root"));
        return breaking.moveItem(Url::file(local.write("staged", picture)),
                                 server->url("IMG_1.JPG"));
    }();
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().message, "Größe stimmt nach der Übertragung nicht");
    EXPECT_TRUE(stagedContents() == picture);
    EXPECT_EQ(serversTree(), Tree{});
}

}  // namespace
}  // namespace bildkurier
