// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#import <ImageCaptureCore/ImageCaptureCore.h>

// The framework as the test wants it: every object answers what is written here.

namespace bildkurier {

struct FakeDevice {
    NSString* name = nil;
    NSString* serial = nil;
    NSString* persistentId = nil;
    NSString* uuid = nil;
    NSArray* media = nil;
    id delegate = nil;
    int opened = 0;
    int closed = 0;
};
FakeDevice& fakeOf(ICDevice* device);

struct FakeItem {
    NSString* name = nil;
    NSDate* created = nil;
    NSDate* fileCreated = nil;
    off_t size = 0;
    NSArray* sidecars = nil;
    NSDictionary* options = nil;  ///< of the last download
    NSString* saved = nil;
    NSError* error = nil;
};
FakeItem& fakeOf(ICCameraItem* item);

struct FakeBrowser {
    ICDeviceBrowser* browser = nil;
    id delegate = nil;
    ICDeviceTypeMask mask{};
    bool hadDelegateAtStart = false;
    bool browsing = false;
};
/// The one made last.
FakeBrowser& fakeBrowser();

}  // namespace bildkurier
