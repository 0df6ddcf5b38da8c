// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFoundation.h"
#include "SecurityScopedBookmarks.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

using Calls = std::vector<std::string>;

class SecurityScopedBookmarksTest : public testing::Test {
protected:
    SecurityScopedBookmarks bookmarks;
    FakeFoundation& fake = FakeFoundation::shared();
    Url folder = Url::file("/bilder ä");

    void SetUp() override { FakeFoundation::reset(); }
};

TEST_F(SecurityScopedBookmarksTest, MakesBookmarksWithPermission) {
    EXPECT_EQ(bookmarks.bookmark(folder), "/bilder ä");
    EXPECT_EQ(fake.calls, Calls{"bookmark /bilder ä 0x800"});
    fake.makesBookmarks = false;
    EXPECT_EQ(bookmarks.bookmark(folder), std::nullopt);
}

TEST_F(SecurityScopedBookmarksTest, FindsFoldersWithoutAskingOrMounting) {
    const auto found = bookmarks.resolve("/bilder ä");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->folder, folder);
    EXPECT_FALSE(found->isStale);
    EXPECT_EQ(fake.calls, Calls{"resolve /bilder ä 0x700"});
    fake.isStale = true;
    EXPECT_TRUE(bookmarks.resolve("/bilder ä")->isStale);
    fake.findsFolders = false;
    EXPECT_EQ(bookmarks.resolve("/bilder ä"), std::nullopt);
}

TEST_F(SecurityScopedBookmarksTest, StopsAccessWithTheObjectItStartedWith) {
    bookmarks.resolve("/bilder ä");
    EXPECT_TRUE(bookmarks.startAccess(folder));
    bookmarks.resolve("/bilder ä");
    bookmarks.stopAccess(folder);
    EXPECT_EQ(fake.calls, (Calls{"resolve /bilder ä 0x700", "start /bilder ä",
                                 "resolve /bilder ä 0x700", "stop /bilder ä"}));
    ASSERT_EQ(fake.accessed.size(), 2U);
    EXPECT_EQ(fake.accessed[0], fake.accessed[1]);
}

TEST_F(SecurityScopedBookmarksTest, StartsAccessToWhatWasNeverResolved) {
    EXPECT_TRUE(bookmarks.startAccess(Url::file("/schlüssel")));
    bookmarks.stopAccess(Url::file("/schlüssel"));
    EXPECT_EQ(fake.calls, (Calls{"start /schlüssel", "stop /schlüssel"}));
}

TEST_F(SecurityScopedBookmarksTest, StopsNothingThatHasNotStarted) {
    fake.startsAccess = false;
    EXPECT_FALSE(bookmarks.startAccess(folder));
    bookmarks.stopAccess(folder);
    EXPECT_EQ(fake.calls, Calls{"start /bilder ä"});
}

}  // namespace
}  // namespace bildkurier
