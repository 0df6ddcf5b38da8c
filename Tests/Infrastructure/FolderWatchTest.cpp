// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderWatch.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

class FolderWatchTest : public testing::Test {
protected:
    void SetUp() override { watch.renew(); }

    /// Whether anything was told by now, which it is before the call that it is about returns. Of
    /// the folder for temporary files others are told, too.
    bool wasTold() const {
        pollfd told{.fd = watch.descriptor(), .events = POLLIN, .revents = 0};
        return ::poll(&told, 1, 0) == 1;
    }

    TemporaryFolder folder;
    std::string card = folder.makeFolder("above/card");
    FolderWatch watch{{card}};
};

TEST_F(FolderWatchTest, TellsWhenAFolderGoesAndReturns) {
    EXPECT_FALSE(watch.takeChange());
    fs::rename(card, folder.path("elsewhere"));
    EXPECT_TRUE(watch.takeChange());
    EXPECT_FALSE(watch.takeChange());
    watch.renew();
    fs::rename(folder.path("elsewhere"), card);
    EXPECT_TRUE(watch.takeChange());
    fs::remove(card);
    EXPECT_TRUE(watch.takeChange());
}

TEST_F(FolderWatchTest, TellsWhenAFolderAboveGoesAndReturns) {
    fs::rename(folder.path("above"), folder.path("elsewhere"));
    EXPECT_TRUE(watch.takeChange());
    watch.renew();
    fs::rename(folder.path("elsewhere"), folder.path("above"));
    EXPECT_TRUE(watch.takeChange());
}

TEST_F(FolderWatchTest, TellsOfAFolderBehindALink) {
    const std::string link = folder.path("link");
    fs::create_symlink(card, link);
    FolderWatch linked({link});
    linked.renew();
    fs::rename(card, folder.path("elsewhere"));
    EXPECT_TRUE(linked.takeChange());
    fs::remove(link);
    EXPECT_TRUE(linked.takeChange());
}

TEST_F(FolderWatchTest, LeavesAloneWhatHasOtherNames) {
    folder.write("above/card.jpg", "picture");
    folder.makeFolder("above/other");
    EXPECT_TRUE(wasTold());
    EXPECT_FALSE(watch.takeChange());
    folder.write("above/card/IMG_1.JPG", "picture");
    EXPECT_FALSE(watch.takeChange());
}

TEST_F(FolderWatchTest, ForgetsWhatItWasToldWhenItIsRenewed) {
    fs::rename(card, folder.path("elsewhere"));
    watch.renew();
    EXPECT_FALSE(watch.takeChange());
}

TEST(FolderWatch, WatchesNothingWithoutFolders) {
    FolderWatch watch({});
    watch.renew();
    EXPECT_EQ(watch.descriptor(), -1);
}

}  // namespace
}  // namespace bildkurier
