// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"
#include "MockedCamera.h"
#include "ProgramCall.h"
#include "RecordingBrowserSink.h"
#include "RecordingDeviceSink.h"
#include "Recordings.h"
#include "RunUntil.h"
#include "SystemCallFilter.h"
#include "TemporaryFolder.h"
#include "Tree.h"
#include "UdevTestbed.h"
#include "UsbCameras.h"
#include "UsbWatch.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string_view>
#include <vector>

namespace bildkurier {
namespace {

using Events = std::vector<std::string>;

constexpr auto path = "/devices/pci0000:00/0000:00:14.0/usb1/1-1";

/// Cameras as udev tells of them; nobody looks in between.
class UsbEventsTest : public testing::Test {
protected:
    UsbEventsTest() { options.timing.scan = std::chrono::hours(1); }
    ~UsbEventsTest() override { cameras.reset(); }

    void SetUp() override {
        if (!udev.isInPlace()) GTEST_SKIP() << "takes umockdev-wrapper to start this";
    }

    void start() {
        cameras = std::make_unique<UsbCameras>(loop, options);
        cameras->start(sink);
        runUntil([this] { return !sink->events.empty(); });
    }

    void runUntil(const std::function<bool()>& reached) {
        ASSERT_TRUE(bildkurier::runUntil(loop, reached)) << testing::PrintToString(sink->events);
    }

    UdevTestbed udev;
    UsbCameras::Options options;
    EventLoop loop;
    std::shared_ptr<RecordingBrowserSink> sink = std::make_shared<RecordingBrowserSink>();
    std::unique_ptr<UsbCameras> cameras;
};

TEST_F(UsbEventsTest, TellOfACameraThatComesAndGoes) {
    start();
    EXPECT_EQ(sink->events, Events{"reported"});
    udev.plugIn(MockedCamera{.path = path, .number = 7}.description(), std::string("/sys") + path);
    runUntil([this] { return sink->added.size() == 1; });
    EXPECT_EQ(sink->added.front()->facts().serial, "S1001");
    udev.pull();
    runUntil([this] { return sink->removed.size() == 1; });
    EXPECT_EQ(sink->events, (Events{"reported", "+Testkamera", "-Testkamera"}));
}

TEST_F(UsbEventsTest, AreFollowedByASecondLook) {
    using Clock = std::chrono::steady_clock;
    std::mutex mutex;
    std::vector<Clock::time_point> looks;
    const auto count = [&] {
        const std::lock_guard lock(mutex);
        return looks.size();
    };
    const UsbWatch watch(UsbBus(), std::chrono::hours(1), [&](const auto&) {
        const std::lock_guard lock(mutex);
        looks.push_back(Clock::now());
    });
    runUntil([&] { return count() == 1; });
    udev.plugIn(MockedCamera{.path = path, .number = 7}.description(), std::string("/sys") + path);
    const auto plugged = Clock::now();
    runUntil([&] {
        const std::lock_guard lock(mutex);
        return looks.size() >= 3 && looks.back() - plugged > std::chrono::milliseconds(400);
    });
    udev.pull();
}

// What the C library's access(2) calls; newer machines have only the one with a folder in front.
#ifdef SYS_access
constexpr int accessCall = SYS_access;
constexpr std::size_t pathOfAccess = 0;
#else
constexpr int accessCall = SYS_faccessat;
constexpr std::size_t pathOfAccess = 1;
#endif

/// Makes udev seem to run, as access(2) tells, and fails the calls numbered `others`.
[[nodiscard]] bool runBesideUdev(const std::vector<int>& others,
                                 const std::function<void()>& action) {
    std::vector<int> calls{accessCall};
    calls.insert(calls.end(), others.begin(), others.end());
    const auto rule = [](const seccomp_data& call) {
        if (call.nr != accessCall) return EMFILE;
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        const std::string_view asked(reinterpret_cast<const char*>(call.args[pathOfAccess]));
        return asked == "/run/udev/control" ? doNothing : 0;
    };
    return runFiltered(calls, rule, action);
}

TEST_F(UsbEventsTest, AreWaitedForUntilUdevHasSaidWhoMayOpenACamera) {
    udev.plugIn(MockedCamera{.path = path, .number = 7}.description(), std::string("/sys") + path);
    EXPECT_EQ(UsbBus().cameras().size(), 1U);
    bool isWatched = false;
    std::vector<UsbPlace> found(1);
    const auto look = [&] {
        isWatched = UsbBus().isWatched();
        found = UsbBus().cameras();
    };
    if (!runBesideUdev({}, look)) GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_TRUE(isWatched);
    EXPECT_EQ(found, std::vector<UsbPlace>());
    udev.pull();
}

TEST_F(UsbEventsTest, AreLookedForAgainAndAgainWhereNobodyTellsOfThem) {
    bool haveLooked = false;
    const auto look = [&] {
        std::atomic<int> looks = 0;
        const UsbWatch watch(UsbBus(), std::chrono::milliseconds(1), [&](const auto&) { ++looks; });
        haveLooked = bildkurier::runUntil(loop, [&] { return looks >= 3; });
    };
    if (!runBesideUdev({SYS_socket}, look)) GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_TRUE(haveLooked);
}

/// A real camera, all of whose answers were recorded once.
class RecordedCameraTest : public UsbEventsTest {
protected:
    void SetUp() override {
        UsbEventsTest::SetUp();
        if (!areThereRecordings()) GTEST_SKIP() << "no recordings in " << recordings();
    }

    void plugIn() {
        std::ifstream file(recordings() / "sx200-2530.umockdev");
        const std::string description(std::istreambuf_iterator<char>(file), {});
        udev.plugIn(description,
                    "/sys/devices/pci0000:00/0000:00:1a.0/usb1/1-1/1-1.5/1-1.5.2/1-1.5.2.3");
        udev.answer("/dev/bus/usb/001/011", recordings() / "sx200-2530.ioctl");
    }

    Tree pictures() const {
        const std::string archive = recordings() / "test-photos.tar";
        const std::string to = folder.makeFolder("pictures");
        EXPECT_TRUE(succeeds({"tar", "-xf", archive, "-C", to, "--no-same-owner"}));
        return tree(to + "/DCIM/100CANON");
    }

    const TemporaryFolder folder;
};

TEST_F(RecordedCameraTest, IsFoundListedAndLoadedByteForByte) {
    start();
    plugIn();
    runUntil([this] { return !sink->added.empty(); });
    const auto camera = sink->added.front();
    EXPECT_EQ(camera->facts().name, "Canon PowerShot SX200 IS");
    EXPECT_EQ(camera->facts().serial, "C767F1C714174C309255F70E4A7B2EE2");

    const auto events = std::make_shared<RecordingDeviceSink>();
    camera->setSink(events);
    camera->openSession();
    runUntil([&] { return events->events.size() == 2; });
    EXPECT_EQ(events->events, (Events{"opened", "ready"}));

    const std::string target = folder.makeFolder("target");
    std::mutex mutex;
    int loaded = 0;
    for (const auto& item : camera->mediaFiles()) {
        item.file->download({.directory = target, .saveAs = *item.file->facts().name},
                            [&](const Result<std::optional<std::string>>& done) {
                                EXPECT_TRUE(done) << done.error().message;
                                const std::lock_guard lock(mutex);
                                ++loaded;
                            });
    }
    runUntil([&] {
        const std::lock_guard lock(mutex);
        return loaded == 2;
    });
    EXPECT_TRUE(tree(target) == pictures());
    udev.pull();
    runUntil([this] { return !sink->removed.empty(); });
}

}  // namespace
}  // namespace bildkurier
