// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "BookmarkFolderAccess.h"
#include "MemoryUserDefaults.h"
#include "PathBookmarks.h"
#include "ScriptedSandbox.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <utility>

namespace bildkurier {

namespace {

using SandboxCalls = std::vector<std::string>;

class BookmarkFolderAccessTest : public testing::Test {
    TemporaryFolder disk_;
    std::shared_ptr<MemoryUserDefaults> defaults_ = std::make_shared<MemoryUserDefaults>();
    std::shared_ptr<ScriptedSandbox> sandbox_ = std::make_shared<ScriptedSandbox>();

protected:
    const Url bilder = Url::file(disk_.makeFolder("bilder"));
    const Url filme = Url::file(disk_.makeFolder("filme"));
    const Url link = disk_.url("link");  ///< leads to `bilder`

    void SetUp() override {
        std::filesystem::create_directory_symlink("bilder", disk_.path("link"));
    }

    /// As the next launch of the program makes it.
    std::unique_ptr<BookmarkFolderAccess> launched(bool sandboxed = true) {
        return std::make_unique<BookmarkFolderAccess>(defaults_, "destBookmark", sandboxed,
                                                      sandbox_);
    }

    ScriptedSandbox& sandbox() { return *sandbox_; }
    /// What the system was asked to do since the last time.
    SandboxCalls calls() { return std::exchange(sandbox_->calls, {}); }
    /// Stores a bookmark of a folder, of an earlier launch.
    void bookmarked(const Url& folder) { defaults_->setString("destBookmark", "0:" + folder.path); }
    std::optional<std::string> stored() const { return defaults_->string("destBookmark"); }
    auto& values() { return defaults_->values; }

    std::string path(const std::string& relative) const { return disk_.path(relative); }
    Url url(const std::string& relative) const { return disk_.url(relative); }
};

TEST_F(BookmarkFolderAccessTest, StoresABookmarkOfAPickedFolderAndTakesUpAccess) {
    const auto access = launched();
    access->remember(bilder);
    EXPECT_EQ(calls(), (SandboxCalls{"bookmark " + bilder.path, "start " + bilder.path}));
    EXPECT_EQ(stored(), "1:" + bilder.path);
    EXPECT_EQ(values().size(), 1U);
    EXPECT_TRUE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, HoldsAPickedFolderWhoseBookmarkCannotBeMade) {
    bookmarked(filme);
    sandbox().makesBookmarks = false;
    const auto access = launched();
    access->remember(bilder);
    EXPECT_EQ(stored(), "0:" + filme.path);
    EXPECT_TRUE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, OnlyStoresAFreshBookmarkOfAFolderThatIsHeld) {
    const auto access = launched();
    access->remember(bilder);
    calls();
    for (const Url& again : {bilder, link, url("./filme/../bilder/")}) {
        access->remember(again);
        EXPECT_EQ(calls(), (SandboxCalls{"bookmark " + again.path}));
    }
    EXPECT_EQ(stored(), "4:" + url("./filme/../bilder/").path);
}

TEST_F(BookmarkFolderAccessTest, StopsAccessToTheOldFolderBeforeItTakesUpTheNew) {
    const auto access = launched();
    access->remember(bilder);
    calls();
    access->remember(filme);
    EXPECT_EQ(calls(), (SandboxCalls{"bookmark " + filme.path, "stop " + bilder.path,
                                     "start " + filme.path}));
    EXPECT_EQ(stored(), "2:" + filme.path);
    EXPECT_TRUE(access->isGranted(filme));
    EXPECT_FALSE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, HoldsAPickedFolderWithoutAccessAndHasNothingToStop) {
    sandbox().startsAccess = false;
    auto access = launched();
    access->remember(bilder);
    EXPECT_TRUE(access->isGranted(bilder));
    calls();
    access->remember(bilder);
    access->remember(filme);
    access.reset();
    EXPECT_EQ(calls(), (SandboxCalls{"bookmark " + bilder.path, "bookmark " + filme.path,
                                     "start " + filme.path}));
}

TEST_F(BookmarkFolderAccessTest, RestoresNothingWhereNothingIsStored) {
    EXPECT_EQ(launched()->restore(), std::nullopt);
    values()["destBookmark"] = true;
    EXPECT_EQ(launched()->restore(), std::nullopt);
    EXPECT_EQ(calls(), SandboxCalls());
}

TEST_F(BookmarkFolderAccessTest, TakesUpAccessToTheRememberedFolder) {
    bookmarked(bilder);
    const auto access = launched();
    EXPECT_EQ(access->restore(), bilder);
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + bilder.path, "start " + bilder.path}));
    EXPECT_TRUE(access->isGranted(bilder));
    EXPECT_EQ(stored(), "0:" + bilder.path);
}

TEST_F(BookmarkFolderAccessTest, RestoresWhatAnEarlierLaunchRemembered) {
    launched()->remember(bilder);
    const auto access = launched();
    EXPECT_EQ(access->restore(), bilder);
    EXPECT_TRUE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, KeepsWhatItHoldsWhenABookmarkLeadsNowhere) {
    const auto access = launched();
    access->remember(bilder);
    calls();
    sandbox().findsFolders = false;
    EXPECT_EQ(access->restore(), std::nullopt);
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 1:" + bilder.path}));
    EXPECT_TRUE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, DoesNotStartAgainForAFolderThatIsHeld) {
    const auto access = launched();
    access->remember(bilder);
    bookmarked(link);
    calls();
    EXPECT_EQ(access->restore(), link);
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + link.path}));
}

TEST_F(BookmarkFolderAccessTest, SwitchesToTheRememberedFolder) {
    const auto access = launched();
    access->remember(bilder);
    bookmarked(filme);
    calls();
    EXPECT_EQ(access->restore(), filme);
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + filme.path, "stop " + bilder.path,
                                     "start " + filme.path}));
    EXPECT_TRUE(access->isGranted(filme));
    EXPECT_FALSE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, HoldsNothingInTheSandboxWhenTheRememberedFolderIsRefused) {
    auto access = launched();
    access->remember(bilder);
    bookmarked(filme);
    calls();
    sandbox().startsAccess = false;
    EXPECT_EQ(access->restore(), filme);
    EXPECT_FALSE(access->isGranted(filme));
    EXPECT_FALSE(access->isGranted(bilder));
    access.reset();
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + filme.path, "stop " + bilder.path,
                                     "start " + filme.path}));
}

TEST_F(BookmarkFolderAccessTest, HoldsTheRememberedFolderOutsideTheSandboxWithoutAccess) {
    bookmarked(bilder);
    sandbox().startsAccess = false;
    auto access = launched(false);
    EXPECT_EQ(access->restore(), bilder);
    EXPECT_EQ(access->restore(), bilder);
    access.reset();
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + bilder.path, "start " + bilder.path,
                                     "resolve 0:" + bilder.path}))
        << "the second time it was held";
}

TEST_F(BookmarkFolderAccessTest, RenewsAStaleBookmark) {
    bookmarked(bilder);
    sandbox().isStale = true;
    const auto access = launched();
    for (const auto* fresh : {"1:", "2:"}) {
        EXPECT_EQ(access->restore(), bilder);
        EXPECT_EQ(stored(), fresh + bilder.path) << "held already, the second time";
    }
    EXPECT_EQ(calls(), (SandboxCalls{"resolve 0:" + bilder.path, "start " + bilder.path,
                                     "bookmark " + bilder.path, "resolve 1:" + bilder.path,
                                     "bookmark " + bilder.path}));
}

TEST_F(BookmarkFolderAccessTest, RenewsAStaleBookmarkOfAFolderThatIsRefused) {
    bookmarked(bilder);
    sandbox().isStale = true;
    sandbox().startsAccess = false;
    EXPECT_EQ(launched()->restore(), bilder);
    EXPECT_EQ(stored(), "1:" + bilder.path);
}

TEST_F(BookmarkFolderAccessTest, KeepsAStaleBookmarkThatCannotBeRenewed) {
    bookmarked(bilder);
    sandbox().isStale = true;
    sandbox().makesBookmarks = false;
    EXPECT_EQ(launched()->restore(), bilder);
    EXPECT_EQ(stored(), "0:" + bilder.path);
}

TEST_F(BookmarkFolderAccessTest, StopsAccessAtItsEnd) {
    bookmarked(bilder);
    auto access = launched();
    access->restore();
    calls();
    access.reset();
    EXPECT_EQ(calls(), (SandboxCalls{"stop " + bilder.path}));
}

TEST_F(BookmarkFolderAccessTest, HasNothingToStopWhenNothingWasHeld) {
    launched().reset();
    EXPECT_EQ(calls(), SandboxCalls());
}

TEST_F(BookmarkFolderAccessTest, GrantsEverythingOutsideTheSandbox) {
    const auto access = launched(false);
    EXPECT_TRUE(access->isGranted(bilder));
    access->remember(bilder);
    EXPECT_TRUE(access->isGranted(filme));
    EXPECT_TRUE(access->isGranted(Url::file("/gibt/es/nicht")));
}

TEST_F(BookmarkFolderAccessTest, GrantsNothingInTheSandboxWithoutAFolder) {
    EXPECT_FALSE(launched()->isGranted(bilder));
    EXPECT_FALSE(launched()->isGranted(Url::file("/")));
}

TEST_F(BookmarkFolderAccessTest, GrantsTheFolderAndAllBelow) {
    std::filesystem::create_directory_symlink("../filme", path("bilder/hinaus"));
    std::filesystem::create_directory_symlink("bilder/tag", path("hinein"));
    const struct {
        std::string held;
        std::string asked;
        bool granted;
    } cases[] = {
        {"bilder", "bilder", true},
        {"bilder", "bilder/", true},
        {"bilder/", "bilder", true},
        {"bilder", "bilder/2024/neu.jpg", true},
        {"bilder", "filme/../bilder/./a", true},
        {"bilder", "bilder2", false},
        {"bilder", "bilder2/a", false},
        {"bilder", "bild", false},
        {"bilder", "filme", false},
        {"bilder", "bilder/../filme", false},
        {"bilder", "", false},
        {"bilder", "link", true},
        {"bilder", "link/fehlt/noch", true},
        {"link", "link", true},
        {"link", "bilder/a", true},
        {"link", "link2", false},
        {"link", "filme", false},
        // The text of the path lies inside, whatever links on the way.
        {"bilder", "bilder/hinaus", true},
        {"fehlt", "fehlt/a", true},
        {"fehlt", "fehlt2", false},
    };
    for (const auto& [held, asked, granted] : cases) {
        const auto access = launched();
        access->remember(url(held));
        EXPECT_EQ(access->isGranted(url(asked)), granted) << held << " " << asked;
    }
}

TEST_F(BookmarkFolderAccessTest, GrantsEverythingBelowTheRootItHolds) {
    const auto access = launched();
    access->remember(Url::file("/"));
    EXPECT_TRUE(access->isGranted(Url::file("/")));
    EXPECT_TRUE(access->isGranted(bilder));
}

TEST_F(BookmarkFolderAccessTest, GrantsWhatLayBehindALinkWhenItWasPicked) {
    const auto access = launched();
    access->remember(link);
    std::filesystem::remove(link.path);
    std::filesystem::create_directory_symlink("filme", link.path);
    EXPECT_TRUE(access->isGranted(bilder));
    EXPECT_FALSE(access->isGranted(filme));
}

TEST_F(BookmarkFolderAccessTest, ResolvesLinksAsFarAsAPathExists) {
    const std::string root =
        std::filesystem::canonical(path("bilder")).parent_path().string() + "/";
    std::filesystem::create_symlink("fehlt", path("ins-leere"));
    std::filesystem::create_symlink("kreis", path("kreis"));
    std::filesystem::create_symlink("/", path("wurzel"));
    const std::string longName(300, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"bilder", "bilder"},
        {"bilder/", "bilder"},
        {"bilder//.//", "bilder"},
        {"filme/../bilder", "bilder"},
        {"link", "bilder"},
        {"link/fehlt/noch", "bilder/fehlt/noch"},
        {"link/fehlt/../noch/", "bilder/noch"},
        {"link/../filme", "filme"},
        {"fehlt/link", "fehlt/link"},
        {"ins-leere/a", "ins-leere/a"},
        {"kreis/a", "kreis/a"},
        {"link/" + longName, "bilder/" + longName},
    };
    for (const auto& [given, real] : cases)
        EXPECT_EQ(BookmarkFolderAccess::realPath(url(given)), root + real) << given;
    EXPECT_EQ(BookmarkFolderAccess::realPath(url("wurzel/fehlt")), "/fehlt");
}

TEST_F(BookmarkFolderAccessTest, LeavesAPathAsItIsOfWhichNothingExists) {
    const std::pair<const char*, const char*> cases[] = {
        {"/fehlt/ganz", "/fehlt/ganz"},
        {"/fehlt/./a/../b/", "/fehlt/b"},
        {"/", "/"},
        {"/..", "/"},
        {"fehlt/ganz", "fehlt/ganz"},
        {"", ""},
    };
    for (const auto& [given, real] : cases)
        EXPECT_EQ(BookmarkFolderAccess::realPath(Url::file(given)), real) << given;
}

TEST(PathBookmarks, LeadNowhereUnlessTheyAreWholePaths) {
    EXPECT_EQ(PathBookmarks().resolve("/bilder").value().folder, Url::file("/bilder"));
    for (const auto* bookmark : {"", "bilder", "./bilder"})
        EXPECT_FALSE(PathBookmarks().resolve(bookmark)) << bookmark;
}

TEST_F(BookmarkFolderAccessTest, StoresThePlainPathWhereTheSystemHasNoBookmarks) {
    const auto defaults = std::make_shared<MemoryUserDefaults>();
    const auto access = [&] {
        return BookmarkFolderAccess(defaults, "destBookmark", false,
                                    std::make_shared<PathBookmarks>());
    };
    EXPECT_EQ(access().restore(), std::nullopt);
    access().remember(link);
    EXPECT_EQ(defaults->string("destBookmark"), link.path);
    EXPECT_EQ(access().restore(), link);
    defaults->setString("destBookmark", "/gibt/es/nicht");
    EXPECT_EQ(access().restore(), Url::file("/gibt/es/nicht"));
}

}  // namespace

}  // namespace bildkurier
