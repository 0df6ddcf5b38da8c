// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeImageCapture.h"
#include "MacDeviceBrowser.h"
#include "RecordingBrowserSink.h"
#include "RecordingDeviceSink.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

ICCameraDevice* camera(NSString* name) {
    ICCameraDevice* const device = [ICCameraDevice new];
    fakeOf(device).name = name;
    return device;
}

class MacDeviceBrowserTest : public testing::Test {
protected:
    std::unique_ptr<MacDeviceBrowser> browser = std::make_unique<MacDeviceBrowser>();
    std::shared_ptr<RecordingBrowserSink> sink = std::make_shared<RecordingBrowserSink>();
    ICCameraDevice* one = camera(@"Eins");
    ICCameraDevice* two = camera(@"Zwei");

    static id<ICDeviceBrowserDelegate> service() { return fakeBrowser().delegate; }
    static void add(ICDevice* device) {
        [service() deviceBrowser:fakeBrowser().browser didAddDevice:device moreComing:NO];
    }
    static void remove(ICDevice* device) {
        [service() deviceBrowser:fakeBrowser().browser didRemoveDevice:device moreGoing:NO];
    }
};

TEST_F(MacDeviceBrowserTest, LooksForCamerasOfThisComputerOnly) {
    EXPECT_FALSE(fakeBrowser().browsing);
    browser->start(sink);
    EXPECT_TRUE(fakeBrowser().browsing);
    EXPECT_TRUE(fakeBrowser().hadDelegateAtStart);
    EXPECT_EQ(static_cast<NSUInteger>(fakeBrowser().mask), 0x101U);
}

TEST_F(MacDeviceBrowserTest, LetsGoOfTheServiceAtItsEnd) {
    browser->start(sink);
    browser.reset();
    EXPECT_FALSE(fakeBrowser().browsing);
    EXPECT_EQ(service(), nil);
}

TEST_F(MacDeviceBrowserTest, ReportsTheVeryDeviceThatWasAdded) {
    browser->start(sink);
    add(one);
    add(two);
    remove(two);
    remove(two);
    remove(camera(@"Fremd"));
    remove(one);
    EXPECT_EQ(sink->events, (std::vector<std::string>{"+Eins", "+Zwei", "-Zwei", "-Eins"}));
    EXPECT_EQ(sink->removed, (std::vector{sink->added[1], sink->added[0]}));
}

TEST_F(MacDeviceBrowserTest, SaysOnceThatTheAttachedDevicesAreReported) {
    browser->start(sink);
    add(one);
    [service() deviceBrowserDidEnumerateLocalDevices:fakeBrowser().browser];
    [service() deviceBrowserDidEnumerateLocalDevices:fakeBrowser().browser];
    EXPECT_EQ(sink->events, (std::vector<std::string>{"+Eins", "reported"}));
}

TEST_F(MacDeviceBrowserTest, DropsEventsWhenNobodyListens) {
    browser->start(sink);
    sink.reset();
    EXPECT_NO_THROW(add(one));
    EXPECT_NO_THROW(remove(one));
    EXPECT_NO_THROW([service() deviceBrowserDidEnumerateLocalDevices:fakeBrowser().browser]);
}

class MacDeviceTest : public MacDeviceBrowserTest {
protected:
    std::shared_ptr<RecordingDeviceSink> listener = std::make_shared<RecordingDeviceSink>();

    std::shared_ptr<NativeDevice> added(ICDevice* device) {
        browser->start(sink);
        add(device);
        return sink->added.back();
    }
    id<ICCameraDeviceDelegate> events() { return fakeOf(one).delegate; }
};

TEST_F(MacDeviceTest, HasTheFactsOfTheDeviceEachInItsPlace) {
    auto& fake = fakeOf(one);
    fake.serial = @"S";
    fake.persistentId = @"P";
    fake.uuid = @"U";
    const DeviceFacts facts = added(one)->facts();
    EXPECT_EQ(facts.name, "Eins");
    EXPECT_EQ(facts.serial, "S");
    EXPECT_EQ(facts.persistentId, "P");
    EXPECT_EQ(facts.uuid, "U");
    EXPECT_EQ(facts.folder, std::nullopt);
}

TEST_F(MacDeviceTest, HasNoFactsThatTheDeviceLacks) {
    const DeviceFacts facts = added(camera(nil))->facts();
    EXPECT_EQ(facts.name, std::nullopt);
    EXPECT_EQ(facts.serial, std::nullopt);
    EXPECT_EQ(facts.persistentId, std::nullopt);
    EXPECT_EQ(facts.uuid, std::nullopt);
}

TEST_F(MacDeviceTest, TellsACameraFromAScanner) {
    EXPECT_TRUE(added(one)->isCamera());
    const auto scanner = added([ICDevice new]);
    EXPECT_FALSE(scanner->isCamera());
    EXPECT_TRUE(scanner->mediaFiles().empty());
}

TEST_F(MacDeviceTest, ListsItemsInOrderAndTellsFilesFromTheRest) {
    EXPECT_TRUE(added(one)->mediaFiles().empty());
    ICCameraFile* const photo = [ICCameraFile new];
    ICCameraFile* const text = [ICCameraFile new];
    fakeOf(photo).name = @"Ä.CR3";
    fakeOf(text).name = @"Ä.XMP";
    fakeOf(photo).sidecars = @[ [ICCameraFolder new], text ];
    fakeOf(one).media = @[ [ICCameraFolder new], photo ];
    const auto items = sink->added.back()->mediaFiles();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].file, nullptr);
    EXPECT_EQ(items[1].file->facts().name, "Ä.CR3");
    const auto sidecars = items[1].file->sidecars();
    ASSERT_EQ(sidecars.size(), 1U);
    EXPECT_EQ(sidecars[0]->facts().name, "Ä.XMP");
    EXPECT_TRUE(sidecars[0]->sidecars().empty());
}

TEST_F(MacDeviceTest, OpensAndClosesSessions) {
    const auto device = added(one);
    device->setSink(listener);
    EXPECT_NE(events(), nil);
    device->openSession();
    EXPECT_EQ(fakeOf(one).opened, 1);
    device->closeSession();
    EXPECT_EQ(fakeOf(one).opened, 1);
    EXPECT_EQ(fakeOf(one).closed, 1);
}

TEST_F(MacDeviceTest, PassesOnWhatTheImportNeedsAndNothingElse) {
    const auto device = added(one);
    device->setSink(listener);
    ICCameraItem* const item = [ICCameraItem new];
    [events() device:one didOpenSessionWithError:nil];
    [events() deviceDidBecomeReadyWithCompleteContentCatalog:one];
    [events() cameraDevice:one didAddItems:@[ item ]];
    [events() cameraDevice:one didRemoveItems:@[ item ]];
    [events() cameraDevice:one didRenameItems:@[ item ]];
    [events() cameraDevice:one didReceiveThumbnail:nullptr forItem:item error:nil];
    [events() cameraDevice:one didReceiveMetadata:nil forItem:item error:nil];
    [events() cameraDevice:one didReceivePTPEvent:[NSData data]];
    [events() cameraDeviceDidChangeCapability:one];
    [events() cameraDeviceDidRemoveAccessRestriction:one];
    [events() cameraDeviceDidEnableAccessRestriction:one];
    [events() device:one didCloseSessionWithError:nil];
    [events() didRemoveDevice:one];
    EXPECT_EQ(listener->events, (std::vector<std::string>{"opened", "ready", "added", "removed"}));
}

TEST_F(MacDeviceTest, PassesOnTheSystemsWordsForARefusedSession) {
    const auto device = added(one);
    device->setSink(listener);
    [events() device:one
        didOpenSessionWithError:[NSError
                                    errorWithDomain:@"Test"
                                               code:-9922
                                           userInfo:@{NSLocalizedDescriptionKey : @"Belegt."}]];
    EXPECT_EQ(listener->events, std::vector<std::string>{"failed: Belegt."});
}

TEST_F(MacDeviceTest, HasDownloadsAnsweredOnlyWhileItIsBrowsed) {
    ICCameraFile* const item = [ICCameraFile new];
    ICCameraFile* const sidecar = [ICCameraFile new];
    fakeOf(item).sidecars = @[ sidecar ];
    fakeOf(one).media = @[ item ];
    const auto file = added(one)->mediaFiles().at(0).file;
    int answers = 0;
    const auto download = [&answers](NativeFile& from) {
        from.download({.directory = "/ziel", .saveAs = "X"},
                      [&answers](const auto&) { ++answers; });
    };
    download(*file);
    download(*file->sidecars().at(0));
    EXPECT_EQ(answers, 2);
    browser.reset();
    download(*file);
    download(*file->sidecars().at(0));
    EXPECT_EQ(answers, 2);
}

TEST_F(MacDeviceTest, LetsGoOfTheDeviceAtItsEnd) {
    added(one)->setSink(listener);
    EXPECT_NE(events(), nil);
    remove(one);
    sink->added.clear();
    sink->removed.clear();
    EXPECT_EQ(events(), nil);
}

}  // namespace
}  // namespace bildkurier
