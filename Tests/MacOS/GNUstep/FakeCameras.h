// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#import <ImageCaptureCore/ImageCaptureCore.h>

/// A camera that says what the test says, and remembers what was asked of it.
@interface FakeICCamera : ICCameraDevice {
@public
    NSString* fakeName;
    NSString* serial;
    NSString* persistent;
    NSString* uuid;
    NSArray* media;
    id<ICDeviceDelegate> receiver;
    int opened;
    int closed;
}
@end

/// A file that says what the test says, and remembers how it was to be downloaded.
@interface FakeICFile : ICCameraFile {
@public
    NSString* fakeName;
    off_t size;
    NSDate* created;
    NSDate* fileCreated;
    NSArray* companions;
    NSDictionary* options;
    NSError* failure;
}
@end

/// The browser made last.
ICDeviceBrowser* lastBrowser();
