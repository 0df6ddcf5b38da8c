// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpServerTest.h"

#include <filesystem>
#include <thread>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// A server that stops answering.
class SftpStallTest : public SftpServerTest {
protected:
    std::shared_ptr<ProcessCommandRunner> programs = std::make_shared<ProcessCommandRunner>();
};

TEST_F(SftpStallTest, IsGivenUpWhenNoConnectionComesAbout) {
    server->connection().stallAll({0, 0});
    const auto made = storeOver(programs, impatientClient())->createDirectory(server->url("x"));
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.contains("timed out")) << made.error().message;
}

TEST_F(SftpStallTest, IsLeftWhenTheProgramEnds) {
    server->connection().stallAll({200'000, unlimited});
    const auto leaving = storeOver(programs);
    std::string complaint;
    std::jthread uploading([&] {
        const auto moved =
            leaving->moveItem(Url::file(local.write("staged", std::string(3'000'000, 'x'))),
                              server->url("IMG_1.JPG"));
        complaint = moved ? "" : moved.error().message;
    });
    server->connection().waitUntilStalled();
    programs->endAll();
    uploading.join();
    EXPECT_TRUE(complaint.starts_with("Übertragung fehlgeschlagen: ")) << complaint;
    EXPECT_TRUE(fs::exists(staged()));
    // No client is left that would keep its connection.
    server->connection().finished();
    EXPECT_FALSE(serversTree().contains("IMG_1.JPG"));

    server->connection().behave();
    EXPECT_TRUE(bring("IMG_1.JPG", "picture"));
    EXPECT_EQ(serversTree().at("IMG_1.JPG"), "picture");
}

}  // namespace
}  // namespace bildkurier
