// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppContainer.h"
#include "EnvironmentVariable.h"
#include "EventLoop.h"
#include "ImportLock.h"
#include "IniUserDefaults.h"
#include "SettingsKey.h"
#include "TemporaryFolder.h"
#include "ThreadPool.h"
#include "Tree.h"
#include "UserDefaultsSettings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace bildkurier {
namespace {

class AppContainerTest : public testing::Test {
protected:
    void TearDown() override {
        parts = {};
        pool.reset();
    }

    void make(AppContainer::Options options) {
        options.defaults = defaults;
        options.onAttachedCamerasReported = [this] {
            ++reports;
            loop.stop();
        };
        parts = AppContainer::make(loop, *pool, std::move(options));
    }

    void runUntil(const std::function<bool()>& reached) {
        const auto watching = parts.model->observe([&] {
            if (reached()) loop.stop();
        });
        while (!reached()) loop.run();
    }

    void runUntilKeysAreIdle() {
        const auto watching = parts.keys->observe([this] {
            if (!parts.keys->busy()) loop.stop();
        });
        while (parts.keys->busy()) loop.run();
    }

    /// Begins an import, and returns while its only file is being loaded.
    void loadLargeFile() {
        const std::string clip = folder.write("card/DCIM/100BILDK/CLIP.MP4", "");
        std::filesystem::resize_file(clip, 512U << 20U);
        UserDefaultsSettings(defaults).setDestination(Url::file(destination));
        make({.cards = {card}});
        loop.run();
        runUntil([this] { return !parts.model->newFiles().empty(); });
        parts.model->startImport();
        runUntil([this] { return !parts.model->progress().currentName.empty(); });
    }

    const TemporaryFolder folder;
    const std::string destination = folder.makeFolder("destination");
    const EnvironmentVariable config{"XDG_CONFIG_HOME", folder.makeFolder("config")};
    const EnvironmentVariable data{"XDG_DATA_HOME", folder.makeFolder("data")};
    const EnvironmentVariable caches{"XDG_CACHE_HOME", folder.makeFolder("caches")};
    const EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.makeFolder("runtime")};
    const std::string card = folder.makeFolder("card");
    std::shared_ptr<UserDefaults> defaults =
        std::make_shared<IniUserDefaults>(folder.path("config/a.conf"));
    EventLoop loop;
    std::optional<ThreadPool> pool{std::in_place};
    AppContainer::Parts parts;
    int reports = 0;
};

TEST_F(AppContainerTest, ReportsTheGivenFoldersOnceTheMainQueueRuns) {
    make({.cards = {card}});
    EXPECT_EQ(reports, 0);
    EXPECT_TRUE(parts.model->cameras().empty());
    loop.run();
    EXPECT_EQ(reports, 1);
    ASSERT_EQ(parts.model->cameras().size(), 1U);
    EXPECT_EQ(parts.model->cameras().front()->name(), "card");
    EXPECT_FALSE(parts.model->autoImportEnabled());
}

TEST_F(AppContainerTest, TrustsTheCameraThatIsNamed) {
    folder.write("card/IMG_1.JPG", "one");
    make({.cards = {card}, .trusted = "card"});
    loop.run();
    EXPECT_TRUE(parts.model->autoImportEnabled());
    EXPECT_EQ(UserDefaultsSettings(defaults).autoImportCameraName(), "card");
}

TEST_F(AppContainerTest, LooksForNoCameraWhereItShallNot) {
    make({.cards = {card}, .discovers = false});
    loop.stop();
    loop.run();
    EXPECT_EQ(reports, 0);
    EXPECT_TRUE(parts.model->cameras().empty());
}

TEST_F(AppContainerTest, HandsTheModelTheGivenChoices) {
    UserDefaultsSettings settings(defaults);
    settings.setDestination(folder.url("bilder"));
    settings.setByDate(true);
    make({.discovers = false});
    EXPECT_EQ(parts.model->dest(), folder.url("bilder"));
    EXPECT_TRUE(parts.model->byDate());
}

TEST_F(AppContainerTest, KeepsToThisProcessWhatItChoosesForItself) {
    UserDefaultsSettings settings(defaults);
    settings.setByDate(true);
    settings.setByType(false);
    make({.ownKeys = {SettingsKey::destination, SettingsKey::byDate},
          .choose = [this](SettingsStore& own) { own.setDestination(folder.url("bilder")); },
          .discovers = false});
    EXPECT_EQ(parts.model->dest(), folder.url("bilder"));
    EXPECT_FALSE(parts.model->byDate());
    EXPECT_FALSE(parts.model->byType());
    parts.model->setByType(true);
    for (const SettingsStore* stored :
         {parts.settings.get(), static_cast<SettingsStore*>(&settings)}) {
        EXPECT_NE(stored->destination(), folder.url("bilder"));
        EXPECT_TRUE(stored->byDate());
        EXPECT_TRUE(stored->byType());
    }
}

TEST_F(AppContainerTest, HandsOutTheUsersChoicesByThemselves) {
    const auto choices = AppContainer::choices();
    choices.folderAccess->remember(folder.url("bilder"));
    EXPECT_EQ(AppContainer::choices().folderAccess->restore(), folder.url("bilder"));
    choices.settings->setByDate(true);
    defaults = nullptr;
    make({.discovers = false});
    EXPECT_TRUE(parts.settings->byDate());
    EXPECT_TRUE(parts.model->byDate());
    EXPECT_EQ(parts.model->dest(), folder.url("bilder"));
}

TEST_F(AppContainerTest, WorksWithoutDialogsAndWithoutAFileManager) {
    UserDefaultsSettings(defaults).setDestination(folder.url("bilder"));
    make({.discovers = false});
    parts.model->chooseDest();
    parts.model->showDestInFinder();
    parts.keys->importKey();
    EXPECT_EQ(parts.model->dest(), folder.url("bilder"));
    EXPECT_FALSE(parts.keys->busy());
}

TEST_F(AppContainerTest, LogsInToServersWithTheKeyThereIsNow) {
    const Url nowhere{.scheme = "sftp", .host = "127.0.0.1", .port = 1, .path = "/fotos"};
    const auto complaint = [&] {
        return parts.fileStore->createDirectory(nowhere).error().message;
    };
    // The user's own setup is told to be quiet about the reason, the application's key is not.
    const std::string advice = "Den Grund zeigt im Terminal der Befehl: sftp -P 1 127.0.0.1";
    const std::string reason = "Connection refused)";
    make({.discovers = false});
    EXPECT_TRUE(complaint().ends_with(advice)) << complaint();
    parts.keys->generate();
    runUntilKeysAreIdle();
    EXPECT_TRUE(complaint().ends_with(reason)) << complaint();
    parts.keys->removeKey();
    EXPECT_TRUE(complaint().ends_with(advice)) << complaint();
}

TEST_F(AppContainerTest, LetsOneImportRunPerUser) {
    make({.discovers = false});
    const auto first = parts;
    EXPECT_TRUE(first.runLock->acquire());
    make({.discovers = false});
    EXPECT_FALSE(parts.runLock->acquire());
    first.runLock->release();
    EXPECT_TRUE(parts.runLock->acquire());
}

TEST_F(AppContainerTest, EndsAnImportInTheMiddleOfAFileAndLeavesNothingBehind) {
    loadLargeFile();
    ASSERT_FALSE(ImportLock().acquire());
    AppContainer::end(std::move(parts), pool);
    EXPECT_EQ(tree(destination), (Tree{{"MP4/", ""}}));
    EXPECT_TRUE(ImportLock().acquire());
}

TEST_F(AppContainerTest, ClearsWhatAnAbandonedImportHadStagedElsewhere) {
    loadLargeFile();
    parts.model->cameraBrowserDidRemove(parts.model->camera());
    parts.model->setDest(Url::file(folder.makeFolder("other")));
    AppContainer::end(std::move(parts), pool);
    EXPECT_EQ(tree(destination), (Tree{{"MP4/", ""}}));
}

}  // namespace
}  // namespace bildkurier
