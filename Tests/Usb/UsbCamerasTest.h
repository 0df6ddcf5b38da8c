// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "EventLoop.h"
#include "RecordingBrowserSink.h"
#include "RecordingDeviceSink.h"
#include "RunUntil.h"
#include "TemporaryFolder.h"
#include "UsbCameras.h"
#include "VirtualBus.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace bildkurier {

/// Cameras at a virtual USB as devices, without the rules above them.
class UsbCamerasTest : public testing::Test {
protected:
    using Events = std::vector<std::string>;
    using Milliseconds = UsbTiming::Milliseconds;

    /// A thread left behind would read the environment while the next test changes it.
    static constexpr Milliseconds threadsEnd{60'000};

    UsbCamerasTest() {
        timing.scan = Milliseconds(2);
        timing.vanishing = Milliseconds(50);
        timing.busy.fill(Milliseconds(1));
        timing.events = Milliseconds(10);
        timing.ending = threadsEnd;
        folder.write("card/DCIM/100TEST/IMG_0001.JPG", std::string(2'500'000, 'a'));
        folder.write("card/DCIM/100TEST/IMG_0002.JPG", "klein");
        device.settings = {{"store1", folder.path("card")}};
    }
    ~UsbCamerasTest() override { cameras.reset(); }

    void start() {
        cameras = std::make_unique<UsbCameras>(
            loop, UsbCameras::Options{.bus = usb.bus(), .timing = timing, .release = release});
        cameras->start(sink);
    }

    void runUntil(const std::function<bool()>& reached) {
        ASSERT_TRUE(bildkurier::runUntil(loop, reached))
            << testing::PrintToString(sink->events) << testing::PrintToString(events->events);
    }

    /// Opens the only camera; what came of it.
    std::string opened() {
        runUntil([this] { return !sink->added.empty(); });
        camera = sink->added.back();
        camera->setSink(events);
        events->events.clear();
        camera->openSession();
        runUntil([this] { return !events->events.empty(); });
        return events->events.front();
    }
    /// The same, and its files.
    std::vector<std::shared_ptr<NativeFile>> files() {
        EXPECT_EQ(opened(), "opened");
        runUntil([this] { return events->events.back() == "ready"; });
        std::vector<std::shared_ptr<NativeFile>> found;
        for (const auto& item : camera->mediaFiles()) found.push_back(item.file);
        return found;
    }

    void download(NativeFile& file, const std::string& to, bool overwrite = true) {
        file.download({.directory = to, .saveAs = "copy", .overwrite = overwrite},
                      [this](const Result<std::optional<std::string>>& done) {
                          const std::lock_guard lock(mutex);
                          answers.push_back(done ? "done" : done.error().message);
                      });
    }
    Events answered() {
        const std::lock_guard lock(mutex);
        return answers;
    }

    /// How long letting the cameras go takes.
    double secondsToEnd() {
        const auto begin = std::chrono::steady_clock::now();
        cameras.reset();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    VirtualBus usb;
    TemporaryFolder folder;
    const std::string target = folder.makeFolder("target");
    VirtualBus::Device device{.serial = "S1001"};
    UsbTiming timing;
    CameraConnection::Release release = [](const UsbPlace&, const UsbSession&) {};
    EventLoop loop;
    std::shared_ptr<RecordingBrowserSink> sink = std::make_shared<RecordingBrowserSink>();
    std::shared_ptr<RecordingDeviceSink> events = std::make_shared<RecordingDeviceSink>();
    std::unique_ptr<UsbCameras> cameras;
    std::shared_ptr<NativeDevice> camera;

private:
    std::mutex mutex;
    Events answers;  ///< of downloads
};

}  // namespace bildkurier
