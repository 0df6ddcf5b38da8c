// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeNativeBrowser.h"
#include "FakeNativeDevice.h"
#include "ImageCaptureBrowser.h"
#include "RecordingBrowserDelegate.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

class ImageCaptureBrowserTest : public testing::Test {
protected:
    std::weak_ptr<BrowserSink> sink;
    std::shared_ptr<ImageCaptureBrowser> browser =
        std::make_shared<ImageCaptureBrowser>(std::make_unique<FakeNativeBrowser>(sink));
    std::shared_ptr<RecordingBrowserDelegate> delegate =
        std::make_shared<RecordingBrowserDelegate>();
    std::shared_ptr<FakeNativeDevice> first = std::make_shared<FakeNativeDevice>();
    std::shared_ptr<FakeNativeDevice> second = std::make_shared<FakeNativeDevice>();

    void start() { browser->start(delegate); }
    void add(const std::shared_ptr<FakeNativeDevice>& device) { sink.lock()->deviceAdded(device); }
    void remove(const std::shared_ptr<FakeNativeDevice>& device) {
        sink.lock()->deviceRemoved(device);
    }
};

TEST_F(ImageCaptureBrowserTest, BeginsToBrowseOnlyWhenStarted) {
    EXPECT_EQ(sink.lock(), nullptr);
    start();
    EXPECT_EQ(sink.lock(), browser);
}

TEST_F(ImageCaptureBrowserTest, ReportsEveryCameraAtOnce) {
    start();
    add(first);
    ASSERT_EQ(delegate->added.size(), 1U);
    add(second);
    ASSERT_EQ(delegate->added.size(), 2U);
    EXPECT_NE(delegate->added[0], delegate->added[1]);
    EXPECT_NE(delegate->added[0]->id(), delegate->added[1]->id());
}

TEST_F(ImageCaptureBrowserTest, IgnoresAScanner) {
    first->camera = false;
    start();
    add(first);
    EXPECT_TRUE(delegate->added.empty());
    EXPECT_EQ(first->sink.lock(), nullptr);
    remove(first);
    EXPECT_TRUE(delegate->removed.empty());
}

TEST_F(ImageCaptureBrowserTest, ReportsTheRemovalOfOneOfTwoOnceWithTheCameraItAdded) {
    start();
    add(first);
    add(second);
    remove(second);
    EXPECT_EQ(delegate->removed, std::vector{delegate->added[1]});
    remove(second);
    EXPECT_EQ(delegate->removed.size(), 1U);
    remove(first);
    EXPECT_EQ(delegate->removed, (std::vector{delegate->added[1], delegate->added[0]}));
}

TEST_F(ImageCaptureBrowserTest, TellsOfMoreThatIsKnownOfACamera) {
    start();
    first->known.isComplete = false;
    add(first);
    EXPECT_FALSE(delegate->added[0]->isIdentityFinal());
    first->known.isComplete = true;
    sink.lock()->deviceIdentified(second);
    sink.lock()->deviceIdentified(first);
    EXPECT_EQ(delegate->identified, delegate->added);
    EXPECT_TRUE(delegate->added[0]->isIdentityFinal());
}

TEST_F(ImageCaptureBrowserTest, IgnoresTheRemovalOfADeviceItDoesNotKnow) {
    start();
    add(first);
    remove(second);
    EXPECT_TRUE(delegate->removed.empty());
    remove(first);
    EXPECT_EQ(delegate->removed, delegate->added);
}

TEST_F(ImageCaptureBrowserTest, KeepsACameraAliveWhileItIsAttached) {
    start();
    add(first);
    const std::weak_ptr<Camera> camera = delegate->added[0];
    delegate->added.clear();
    EXPECT_FALSE(camera.expired());
    remove(first);
    delegate->removed.clear();
    EXPECT_TRUE(camera.expired());
}

TEST_F(ImageCaptureBrowserTest, DropsEventsWhenNobodyListensAnyMore) {
    start();
    const std::weak_ptr<RecordingBrowserDelegate> gone = std::exchange(delegate, nullptr);
    ASSERT_TRUE(gone.expired());
    add(first);
    EXPECT_NE(first->sink.lock(), nullptr);
    remove(first);
    EXPECT_EQ(first->sink.lock(), nullptr);
}

TEST_F(ImageCaptureBrowserTest, SaysWhenTheAttachedCamerasHaveBeenReported) {
    int reported = 0;
    browser->onAttachedCamerasReported = [&] { ++reported; };
    start();
    EXPECT_EQ(reported, 0);
    sink.lock()->attachedDevicesReported();
    EXPECT_EQ(reported, 1);
}

TEST_F(ImageCaptureBrowserTest, NeedsNobodyWhoWaitsForTheAttachedCameras) {
    start();
    EXPECT_NO_THROW(sink.lock()->attachedDevicesReported());
}

}  // namespace
}  // namespace bildkurier
