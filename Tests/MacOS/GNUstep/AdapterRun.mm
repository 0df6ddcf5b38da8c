// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Runs the adapters for image capture over fakes of the framework.
#import "FakeCameras.h"
#include "ImageCaptureBrowser.h"
#include "ImageCaptureDevices.h"
#include "RecordingBrowserDelegate.h"
#include "RecordingCameraDelegate.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

using Events = std::vector<std::string>;

class ImageCaptureDevicesTest : public testing::Test {
protected:
    ImageCaptureDevicesTest() {
        camera->fakeName = @"EOS";
        camera->serial = @"";
        camera->persistent = @"P1";
        camera->uuid = @"U1";
        browser->start(delegate);
        framework = lastBrowser();
    }

    void plugIn() {
        [framework.delegate deviceBrowser:framework didAddDevice:camera moreComing:NO];
        delegate->added.back()->setDelegate(events);
    }
    /// As the framework tells the camera's delegate.
    id<ICCameraDeviceDelegate> told() { return (id<ICCameraDeviceDelegate>)camera->receiver; }

    NSAutoreleasePool* pool = [NSAutoreleasePool new];
    FakeICCamera* camera = [FakeICCamera new];
    std::shared_ptr<RecordingBrowserDelegate> delegate =
        std::make_shared<RecordingBrowserDelegate>();
    std::shared_ptr<RecordingCameraDelegate> events = std::make_shared<RecordingCameraDelegate>();
    std::shared_ptr<ImageCaptureBrowser> browser =
        std::make_shared<ImageCaptureBrowser>(std::make_unique<ImageCaptureDevices>());
    ICDeviceBrowser* framework = nil;
};

TEST_F(ImageCaptureDevicesTest, BrowsesForLocalCameras) {
    EXPECT_TRUE(framework.isBrowsing);
    EXPECT_EQ((NSUInteger)framework.browsedDeviceTypeMask, 0x101U);
    browser.reset();
    EXPECT_FALSE(framework.isBrowsing);
    EXPECT_TRUE(framework.delegate == nil);
}

TEST_F(ImageCaptureDevicesTest, PassesOverScanners) {
    ICDevice* scanner = [ICDevice new];
    [framework.delegate deviceBrowser:framework didAddDevice:scanner moreComing:NO];
    [framework.delegate deviceBrowser:framework didRemoveDevice:scanner moreGoing:NO];
    EXPECT_TRUE(delegate->added.empty());
    EXPECT_TRUE(delegate->removed.empty());
}

TEST_F(ImageCaptureDevicesTest, TellWhoACameraIs) {
    plugIn();
    EXPECT_EQ(delegate->added.at(0)->name(), "EOS");
    EXPECT_EQ(delegate->added.at(0)->id(), "U1");
    EXPECT_EQ(delegate->added.at(0)->identity(), "persistent:P1");
}

TEST_F(ImageCaptureDevicesTest, RemoveTheVeryCameraThatWasAdded) {
    plugIn();
    [framework.delegate deviceBrowser:framework didRemoveDevice:[FakeICCamera new] moreGoing:NO];
    EXPECT_TRUE(delegate->removed.empty());
    [framework.delegate deviceBrowser:framework didRemoveDevice:camera moreGoing:NO];
    EXPECT_EQ(delegate->removed, delegate->added);
}

TEST_F(ImageCaptureDevicesTest, SayWhenAllCamerasAreReported) {
    int reported = 0;
    browser->onAttachedCamerasReported = [&] { ++reported; };
    [framework.delegate deviceBrowserDidEnumerateLocalDevices:framework];
    [framework.delegate deviceBrowserDidEnumerateLocalDevices:framework];
    EXPECT_EQ(reported, 1);
}

TEST_F(ImageCaptureDevicesTest, PassOnWhatHappensInASession) {
    plugIn();
    ASSERT_TRUE(camera->receiver != nil) << "without a delegate nothing is opened";
    delegate->added.at(0)->openSession();
    delegate->added.at(0)->closeSession();
    EXPECT_EQ(camera->opened, 1);
    EXPECT_EQ(camera->closed, 1);
    [told() device:camera didOpenSessionWithError:nil];
    [told() device:camera
        didOpenSessionWithError:[NSError errorWithDomain:@"D"
                                                    code:7
                                                userInfo:@{NSLocalizedDescriptionKey : @"belegt"}]];
    [told() deviceDidBecomeReadyWithCompleteContentCatalog:camera];
    [told() cameraDevice:camera didAddItems:@[]];
    [told() cameraDevice:camera didRemoveItems:@[]];
    [told() cameraDevice:camera didRenameItems:@[]];
    EXPECT_EQ(events->events, (Events{"opened", "opened: belegt", "ready", "changed", "changed"}));
}

TEST_F(ImageCaptureDevicesTest, ListFilesWithTheirSidecars) {
    FakeICFile* sidecar = [FakeICFile new];
    sidecar->fakeName = @"A.XMP";
    sidecar->size = 7;
    sidecar->fileCreated = [NSDate dateWithTimeIntervalSince1970:3];
    FakeICFile* raw = [FakeICFile new];
    raw->fakeName = @"Ä.CR3";
    raw->size = 5'000'000'000;
    raw->created = [NSDate dateWithTimeIntervalSince1970:1.25];
    raw->fileCreated = [NSDate dateWithTimeIntervalSince1970:99];
    raw->companions = @[ sidecar, [ICCameraItem new] ];
    camera->media = @[ [ICCameraItem new], raw, [FakeICFile new] ];
    plugIn();
    const auto files = delegate->added.at(0)->files();
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0]->name(), "Ä.CR3");
    EXPECT_EQ(files[0]->size(), 5'000'000'000);
    EXPECT_EQ(files[0]->shotDate(), Date(std::chrono::milliseconds(1'250)));
    EXPECT_EQ(files[1]->name(), "A.XMP");
    EXPECT_EQ(files[1]->shotDate(), Date(std::chrono::seconds(3)));
    EXPECT_FALSE(files[2]->name());
    EXPECT_FALSE(files[2]->shotDate());
    camera->media = nil;
    EXPECT_TRUE(delegate->added.at(0)->files().empty());
}

TEST_F(ImageCaptureDevicesTest, DownloadWithThreeOptions) {
    FakeICFile* file = [FakeICFile new];
    camera->media = @[ file ];
    plugIn();
    std::vector<Result<std::optional<std::string>>> done;
    const auto answer = [&](Result<std::optional<std::string>> result) { done.push_back(result); };
    const auto files = delegate->added.at(0)->files();
    files.at(0)->download(Url::file("/tmp/Ä"), "neu.jpg", answer);
    ASSERT_EQ(done.size(), 1U);
    EXPECT_EQ(done[0].value(), "neu.jpg");
    EXPECT_EQ([file->options count], 3U);
    EXPECT_TRUE([[[file->options objectForKey:ICDownloadsDirectoryURL] path] isEqual:@"/tmp/Ä"]);
    EXPECT_TRUE([[file->options objectForKey:ICSaveAsFilename] isEqual:@"neu.jpg"]);
    EXPECT_TRUE([[file->options objectForKey:ICOverwrite] boolValue]);

    file->failure = [NSError errorWithDomain:@"D" code:1 userInfo:nil];
    files.at(0)->download(Url::file("/tmp"), "\xFF", answer);
    ASSERT_EQ(done.size(), 2U);
    ASSERT_FALSE(done[1]);
    EXPECT_FALSE(done[1].error().message.empty());
}

}  // namespace
}  // namespace bildkurier
