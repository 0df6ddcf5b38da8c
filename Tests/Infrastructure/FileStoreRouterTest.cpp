// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStoreRouter.h"
#include "MemoryFileStore.h"
#include "PassingFileStore.h"
#include "RecordingFileStore.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

/// Never lists a folder to the end.
class TroubledFileStore final : public PassingFileStore {
public:
    using PassingFileStore::PassingFileStore;
    FileListing listing(const Url& folder) override { return {.trouble = folder.path + " is cut"}; }
};

class FileStoreRouterTest : public testing::Test {
protected:
    std::shared_ptr<MemoryFileStore> localFiles = std::make_shared<MemoryFileStore>();
    std::shared_ptr<MemoryFileStore> serverFiles = std::make_shared<MemoryFileStore>();
    std::shared_ptr<RecordingFileStore> local = std::make_shared<RecordingFileStore>(localFiles);
    std::shared_ptr<RecordingFileStore> sftp = std::make_shared<RecordingFileStore>(serverFiles);
    FileStoreRouter router{local, sftp};

    const Url onServer{.scheme = "sftp", .host = "nas", .path = "/p"};
    const std::vector<std::string> everything{
        "stagingDirectory /p", "resolved /p",          "listing /p",
        "fileExists /p",       "fileSize /p",          "isWritableDirectory /p",
        "isNetworkVolume /p",  "availableCapacity /p", "createDirectory /p",
        "admitsFiles /p",      "removeItem /p",
    };

    void callEverything(const Url& url) {
        router.stagingDirectory(url);
        router.resolved(url);
        router.listing(url);
        router.fileExists(url);
        router.fileSize(url);
        router.isWritableDirectory(url);
        router.isNetworkVolume(url);
        router.availableCapacity(url);
        (void)router.createDirectory(url);
        (void)router.admitsFiles(url);
        router.removeItem(url);
    }
};

TEST_F(FileStoreRouterTest, SendsServersUrlsToTheirStore) {
    callEverything(onServer);
    EXPECT_EQ(sftp->calls, everything);
    EXPECT_EQ(local->calls, std::vector<std::string>{});
}

TEST_F(FileStoreRouterTest, SendsAllOtherUrlsToTheLocalStore) {
    for (const std::string scheme : {"file", "", "SFTP", "sftps", "ftp"}) {
        local->calls.clear();
        callEverything({.scheme = scheme, .host = "nas", .path = "/p"});
        EXPECT_EQ(local->calls, everything) << scheme;
    }
    EXPECT_EQ(sftp->calls, std::vector<std::string>{});
}

TEST_F(FileStoreRouterTest, LetsTheTargetOfAMoveDecide) {
    (void)router.moveItem(Url::file("/staged"), onServer);
    EXPECT_EQ(sftp->calls, std::vector<std::string>{"moveItem /staged"});
    EXPECT_EQ(local->calls, std::vector<std::string>{});
    (void)router.moveItem(onServer, Url::file("/target"));
    EXPECT_EQ(local->calls, std::vector<std::string>{"moveItem /p"});
    EXPECT_EQ(sftp->calls.size(), 1U);
}

TEST_F(FileStoreRouterTest, PassesAnswersOnUnchanged) {
    localFiles->capacity = 1;
    serverFiles->capacity = 2;
    serverFiles->isNetwork = true;
    serverFiles->staging = Url::file("/staging");
    serverFiles->folders.insert("/p");
    serverFiles->files["/p/X.JPG"] = "three";
    EXPECT_EQ(router.stagingDirectory(onServer), Url::file("/staging"));
    EXPECT_EQ(router.existingFileKeys(onServer), FileKeys{"x.jpg|5"});
    EXPECT_TRUE(router.fileExists(onServer));
    EXPECT_FALSE(router.fileExists(Url::file("/p")));
    EXPECT_EQ(router.fileSize(onServer.appending("X.JPG")), 5);
    EXPECT_TRUE(router.isWritableDirectory(onServer));
    EXPECT_TRUE(router.isNetworkVolume(onServer));
    EXPECT_EQ(router.availableCapacity(onServer), 2);
    EXPECT_EQ(router.availableCapacity(Url::file("/")), 1);
    EXPECT_TRUE(router.createDirectory(onServer));
    const auto refused = router.createDirectory(onServer.appending("X.JPG"));
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), serverFiles->createDirectory(Url::file("/p/X.JPG")).error());
}

TEST_F(FileStoreRouterTest, AsksTheStoreOfAFolderWhatItsListLacks) {
    FileStoreRouter troubled(local, std::make_shared<TroubledFileStore>(serverFiles));
    EXPECT_EQ(troubled.listing(onServer), FileListing{.trouble = "/p is cut"});
    EXPECT_EQ(troubled.listing(Url::file("/p")), FileListing());
}

TEST_F(FileStoreRouterTest, FindsFreeNamesWhereTheFolderIs) {
    serverFiles->folders.insert("/p");
    serverFiles->files["/p/X.JPG"] = "three";
    EXPECT_EQ(router.freeName("X.JPG", onServer), "X_1.JPG");
    EXPECT_EQ(router.freeName("X.JPG", Url::file("/p")), "X.JPG");
}

}  // namespace
}  // namespace bildkurier
