// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"
#include "ExifCaptureDates.h"
#include "MountedCards.h"
#include "MountedImage.h"
#include "RecordingBrowserSink.h"
#include "RecordingDeviceSink.h"
#include "TemporaryFolder.h"
#include "ThreadPool.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

/// With real threads and the real mount table.
class MountedCardsTest : public testing::Test {
protected:
    MountedCardsTest() {
        browserSink->onEvent = [this] { loop.stop(); };
        deviceSink->onEvent = [this] { loop.stop(); };
    }

    EventLoop loop;
    std::optional<ThreadPool> pool{std::in_place};
    std::shared_ptr<RecordingBrowserSink> browserSink = std::make_shared<RecordingBrowserSink>();
    std::shared_ptr<RecordingDeviceSink> deviceSink = std::make_shared<RecordingDeviceSink>();
    TemporaryFolder folder;
    TemporaryFolder target;
    std::unique_ptr<MountedCards> cards;

    void start(Names folders, bool volumes = false) {
        cards = std::make_unique<MountedCards>(
            loop, *pool, std::make_shared<ExifCaptureDates>(),
            MountedCards::Options{.folders = std::move(folders), .volumes = volumes});
        cards->start(browserSink);
    }

    /// Runs the loop until `reached`, or for so long that it never will be.
    bool runUntil(const std::function<bool()>& reached) {
        bool tooLate = false;
        const Handle deadline = loop.after(Duration(60), [&] {
            tooLate = true;
            loop.stop();
        });
        while (!reached() && !tooLate) loop.run();
        return reached();
    }

    /// Runs what has been posted so far.
    void settle() {
        loop.stop();
        loop.run();
    }

    bool runUntilReported() {
        return runUntil([this] {
            return std::ranges::find(browserSink->events, "reported") != browserSink->events.end();
        });
    }

    std::shared_ptr<NativeDevice> open(const std::shared_ptr<NativeDevice>& device) {
        device->setSink(deviceSink);
        device->openSession();
        EXPECT_TRUE(runUntil([this] { return deviceSink->events.size() == 2; }));
        EXPECT_EQ(deviceSink->events, (Names{"opened", "ready"}));
        return device;
    }
};

TEST_F(MountedCardsTest, ReportsFoldersGivenAndThenThatThisIsAll) {
    start({folder.makeFolder("a"), folder.path("fehlt"), folder.makeFolder("b")});
    EXPECT_TRUE(browserSink->events.empty());
    ASSERT_TRUE(runUntilReported());
    EXPECT_EQ(browserSink->events, (Names{"+a", "+b", "reported"}));
    EXPECT_EQ(browserSink->threads, std::vector(3, std::this_thread::get_id()));
    EXPECT_TRUE(browserSink->added.at(0)->isCamera());
}

TEST_F(MountedCardsTest, SaysThatThisIsAllEvenIfThereIsNothing) {
    start({});
    ASSERT_TRUE(runUntilReported());
    EXPECT_EQ(browserSink->events, Names{"reported"});
}

TEST_F(MountedCardsTest, ListsAndLoads) {
    folder.write("DCIM/IMG_1.JPG", "picture");
    folder.write("DCIM/IMG_1.XMP", "words");
    start({folder.path()});
    ASSERT_TRUE(runUntilReported());
    const auto device = open(browserSink->added.at(0));
    ASSERT_EQ(device->mediaFiles().size(), 1U);
    std::atomic<int> loaded = 0;
    device->mediaFiles()[0].file->download(
        {.directory = target.path(), .saveAs = "IMG_1.JPG", .overwrite = true},
        [&](const Result<std::optional<std::string>>& saved) {
            if (saved) ++loaded;
            loop.stop();
        });
    ASSERT_TRUE(runUntil([&] { return loaded == 1; }));
    EXPECT_EQ(tree(target.path()), (Tree{{"IMG_1.JPG", "picture"}}));
}

TEST_F(MountedCardsTest, MayBeDestroyedAtAnyMoment) {
    folder.write("DCIM/IMG_1.JPG", "picture");
    const std::function<void()> moments[] = {
        [&] { cards.reset(); },
        [&] {
            ASSERT_TRUE(runUntil([&] { return !browserSink->events.empty(); }));
            cards.reset();
        },
        [&] {
            browserSink->onEvent = [&] {
                cards.reset();
                loop.stop();
            };
            ASSERT_TRUE(runUntil([&] { return !browserSink->events.empty(); }));
        },
        [&] {
            ASSERT_TRUE(runUntilReported());
            browserSink->added.back()->setSink(deviceSink);
            browserSink->added.back()->openSession();
            cards.reset();
        },
        [&] {
            ASSERT_TRUE(runUntilReported());
            browserSink->added.back()->setSink(deviceSink);
            browserSink->added.back()->openSession();
            ASSERT_TRUE(runUntil([&] { return !deviceSink->events.empty(); }));
            cards.reset();
        },
        [&] {
            ASSERT_TRUE(runUntilReported());
            browserSink->added.back()->setSink(deviceSink);
            browserSink->added.back()->openSession();
            deviceSink->onEvent = [&] {
                cards.reset();
                loop.stop();
            };
            ASSERT_TRUE(runUntil([&] { return !deviceSink->events.empty(); }));
        },
    };
    for (const auto& destroy : moments) {
        browserSink->onEvent = deviceSink->onEvent = [this] { loop.stop(); };
        browserSink->events.clear();
        deviceSink->events.clear();
        pool.emplace();
        start({folder.path()});
        destroy();
        ASSERT_EQ(cards, nullptr);
        const Names before = browserSink->events;
        const Names deviceBefore = deviceSink->events;
        pool.reset();
        settle();
        EXPECT_EQ(browserSink->events, before);
        EXPECT_EQ(deviceSink->events, deviceBefore);
    }
}

TEST_F(MountedCardsTest, MayBeDestroyedWithoutHavingBeenStarted) {
    cards = std::make_unique<MountedCards>(loop, *pool, nullptr, MountedCards::Options{});
    cards.reset();
    settle();
    EXPECT_TRUE(browserSink->events.empty());
}

TEST_F(MountedCardsTest, AnswersEveryDownloadOnceWhenItIsDestroyedInTheMiddle) {
    constexpr int files = 6;
    constexpr std::uintmax_t size = 32 << 20;
    for (int i = 0; i < files; ++i)
        fs::resize_file(folder.write(std::to_string(i) + ".MP4", ""), size);
    start({folder.path()});
    ASSERT_TRUE(runUntilReported());
    const auto device = open(browserSink->added.at(0));
    std::atomic<int> answers = 0;
    std::atomic<int> failures = 0;
    for (const NativeItem& item : device->mediaFiles()) {
        item.file->download({.directory = target.path(),
                             .saveAs = item.file->facts().name.value_or(""),
                             .overwrite = true},
                            [&](const Result<std::optional<std::string>>& saved) {
                                ++answers;
                                if (!saved) ++failures;
                                loop.stop();
                            });
    }
    cards.reset();
    ASSERT_TRUE(runUntil([&] { return answers >= files; }));
    pool.reset();
    EXPECT_EQ(answers, files);
    EXPECT_EQ(tree(target.path()).size(), static_cast<std::size_t>(files - failures));
    for (const auto& each : fs::directory_iterator(target.path()))
        EXPECT_EQ(each.file_size(), size) << each;
}

/// With a volume that is mounted and unmounted.
class MountedVolumeTest : public MountedCardsTest {
protected:
    static constexpr const char* label = "BK TEST";
    std::optional<MountedImage> volume;

    void SetUp() override {
        try {
            volume.emplace(label);
        } catch (const std::runtime_error&) {
            GTEST_SKIP() << "Braucht root, mkfs.ext4 und ein Loop-Gerät";
        }
    }

    /// Other volumes may be there as well.
    std::vector<std::shared_ptr<NativeDevice>> ours(
        const std::vector<std::shared_ptr<NativeDevice>>& devices) const {
        std::vector<std::shared_ptr<NativeDevice>> found;
        std::ranges::copy_if(devices, std::back_inserter(found), [this](const auto& device) {
            return device->facts().persistentId.value_or("").starts_with(volume->uuid());
        });
        return found;
    }
    auto added() const { return ours(browserSink->added); }
    auto removed() const { return ours(browserSink->removed); }

    bool runUntilAdded(std::size_t count) {
        return runUntil([=, this] { return added().size() >= count; });
    }
    bool runUntilRemoved(std::size_t count) {
        return runUntil([=, this] { return removed().size() >= count; });
    }
};

TEST_F(MountedVolumeTest, KnowsACardByItsUuidAndLabel) {
    fs::create_directory(volume->path("DCIM"));
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    ASSERT_EQ(added().size(), 1U);
    const DeviceFacts facts = added()[0]->facts();
    EXPECT_TRUE(facts.name == label || facts.name == "BK_TEST") << *facts.name;
    EXPECT_EQ(facts.persistentId, volume->uuid());
    EXPECT_EQ(facts.serial, std::nullopt);
    EXPECT_EQ(facts.uuid, std::nullopt);
}

TEST_F(MountedVolumeTest, IsNoCardWithoutACamerasFolders) {
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    EXPECT_TRUE(added().empty());
}

TEST_F(MountedVolumeTest, NoticesACardThatIsPulledAndComesBack) {
    fs::create_directory(volume->path("DCIM"));
    ASSERT_TRUE(volume->unmount());
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    EXPECT_TRUE(added().empty());

    volume->mount();
    ASSERT_TRUE(runUntilAdded(1));
    ASSERT_TRUE(volume->unmount());
    ASSERT_TRUE(runUntilRemoved(1));
    EXPECT_EQ(removed(), added());

    volume->mount();
    ASSERT_TRUE(runUntilAdded(2));
    EXPECT_NE(added()[1], added()[0]);
    EXPECT_EQ(added()[1]->facts().persistentId, added()[0]->facts().persistentId);
}

TEST_F(MountedVolumeTest, FindsFoldersThatAreMadeRightAfterMounting) {
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    ASSERT_TRUE(volume->unmount());
    volume->mount();
    fs::create_directory(volume->path("dcim"));
    EXPECT_TRUE(runUntilAdded(1));
}

TEST_F(MountedVolumeTest, IsOneCameraWhereverItIsMounted) {
    fs::create_directory(volume->path("DCIM"));
    volume->mountAgain();
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    EXPECT_EQ(added().size(), 1U);
    ASSERT_TRUE(volume->unmount());
    ASSERT_TRUE(runUntilRemoved(1));
    ASSERT_TRUE(runUntilAdded(2));
    EXPECT_EQ(removed(), std::vector{added()[0]});
}

TEST_F(MountedVolumeTest, LooksAtNoVolumeUnlessItMay) {
    fs::create_directory(volume->path("DCIM"));
    start({}, false);
    ASSERT_TRUE(runUntilReported());
    EXPECT_EQ(browserSink->events, Names{"reported"});
}

TEST_F(MountedVolumeTest, IsTheSameCardWhetherItIsFoundOrGiven) {
    fs::create_directory(volume->path("DCIM"));
    start({volume->path("")});
    ASSERT_TRUE(runUntilReported());
    ASSERT_EQ(added().size(), 1U);
    const DeviceFacts facts = added()[0]->facts();
    EXPECT_EQ(facts.persistentId, volume->uuid());
    EXPECT_TRUE(facts.name == label || facts.name == "BK_TEST") << *facts.name;

    // It goes and returns as the same.
    ASSERT_TRUE(volume->unmount());
    ASSERT_TRUE(runUntilRemoved(1));
    volume->mount();
    ASSERT_TRUE(runUntilAdded(2));
    EXPECT_EQ(added()[1]->facts().persistentId, volume->uuid());
}

TEST_F(MountedVolumeTest, LetsAGivenFolderGoAndReturnWithItsVolume) {
    fs::create_directory(volume->path("Bilder"));
    start({volume->path("Bilder")});
    ASSERT_TRUE(runUntilReported());
    ASSERT_EQ(browserSink->events, (Names{"+Bilder", "reported"}));
    const std::string identity = volume->uuid() + ":/Bilder";
    EXPECT_EQ(added().at(0)->facts().persistentId, identity);

    ASSERT_TRUE(volume->unmount());
    ASSERT_TRUE(runUntilRemoved(1));
    volume->mount();
    ASSERT_TRUE(runUntilAdded(2));
    EXPECT_EQ(browserSink->events, (Names{"+Bilder", "reported", "-Bilder", "+Bilder"}));
    EXPECT_EQ(added()[1]->facts().persistentId, identity);
}

TEST_F(MountedVolumeTest, CanBePulledWhileItIsOpen) {
    fs::create_directory(volume->path("DCIM"));
    std::ofstream(volume->path("DCIM/IMG_1.JPG")) << "picture";
    start({}, true);
    ASSERT_TRUE(runUntilReported());
    const auto device = open(added().at(0));
    ASSERT_EQ(device->mediaFiles().size(), 1U);
    const auto file = device->mediaFiles()[0].file;
    ASSERT_TRUE(volume->unmount());
    ASSERT_TRUE(runUntilRemoved(1));
    EXPECT_TRUE(device->mediaFiles().empty());

    std::atomic<int> answers = 0;
    std::optional<Error> error;
    file->download({.directory = target.path(), .saveAs = "IMG_1.JPG", .overwrite = true},
                   [&](const Result<std::optional<std::string>>& saved) {
                       if (!saved) error = saved.error();
                       ++answers;
                       loop.stop();
                   });
    ASSERT_TRUE(runUntil([&] { return answers > 0; }));
    EXPECT_EQ(error, Error{"Die Karte wurde entfernt"});
    EXPECT_TRUE(tree(target.path()).empty());

    deviceSink->events.clear();
    device->openSession();
    ASSERT_TRUE(runUntil([&] { return !deviceSink->events.empty(); }));
    EXPECT_EQ(deviceSink->events,
              Names{"failed: Die Karte ist nicht lesbar: Das Gerät ist nicht mehr da"});
}

}  // namespace
}  // namespace bildkurier
