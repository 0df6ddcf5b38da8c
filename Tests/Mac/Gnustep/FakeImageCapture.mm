// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeImageCapture.h"

#include <map>

using namespace bildkurier;

namespace bildkurier {

FakeDevice& fakeOf(ICDevice* device) {
    static std::map<ICDevice*, FakeDevice> all;
    return all[device];
}

FakeItem& fakeOf(ICCameraItem* item) {
    static std::map<ICCameraItem*, FakeItem> all;
    return all[item];
}

FakeBrowser& fakeBrowser() {
    static FakeBrowser last;
    return last;
}

}  // namespace bildkurier

ICDownloadOption const ICDownloadsDirectoryURL = @"ICDownloadsDirectoryURL";
ICDownloadOption const ICSaveAsFilename = @"ICSaveAsFilename";
ICDownloadOption const ICOverwrite = @"ICOverwrite";

@implementation ICDeviceBrowser

- (instancetype)init {
    self = [super init];
    fakeBrowser() = {};
    fakeBrowser().browser = self;
    return self;
}
- (id<ICDeviceBrowserDelegate>)delegate {
    return fakeBrowser().delegate;
}
- (void)setDelegate:(id<ICDeviceBrowserDelegate>)delegate {
    fakeBrowser().delegate = delegate;
}
- (ICDeviceTypeMask)browsedDeviceTypeMask {
    return fakeBrowser().mask;
}
- (void)setBrowsedDeviceTypeMask:(ICDeviceTypeMask)mask {
    fakeBrowser().mask = mask;
}
- (BOOL)isBrowsing {
    return fakeBrowser().browsing;
}
- (void)start {
    fakeBrowser().browsing = true;
    fakeBrowser().hadDelegateAtStart = fakeBrowser().delegate != nil;
}
- (void)stop {
    fakeBrowser().browsing = false;
}

@end

@implementation ICDevice

- (id<ICDeviceDelegate>)delegate {
    return fakeOf(self).delegate;
}
- (void)setDelegate:(id<ICDeviceDelegate>)delegate {
    fakeOf(self).delegate = delegate;
}
- (NSString*)name {
    return fakeOf(self).name;
}
- (NSString*)UUIDString {
    return fakeOf(self).uuid;
}
- (NSString*)serialNumberString {
    return fakeOf(self).serial;
}
- (NSString*)persistentIDString {
    return fakeOf(self).persistentId;
}
- (void)requestOpenSession {
    ++fakeOf(self).opened;
}
- (void)requestCloseSession {
    ++fakeOf(self).closed;
}

@end

@implementation ICCameraDevice

- (NSArray*)mediaFiles {
    return fakeOf(self).media;
}

@end

@implementation ICCameraItem

- (NSString*)name {
    return fakeOf(self).name;
}
- (NSDate*)creationDate {
    return fakeOf(self).created;
}

@end

@implementation ICCameraFile

- (off_t)fileSize {
    return fakeOf(self).size;
}
- (NSArray*)sidecarFiles {
    return fakeOf(self).sidecars;
}
- (NSDate*)fileCreationDate {
    return fakeOf(self).fileCreated;
}
- (NSProgress*)requestDownloadWithOptions:(NSDictionary*)options
                               completion:(void (^)(NSString*, NSError*))completion {
    fakeOf(self).options = [options retain];
    completion(fakeOf(self).saved, fakeOf(self).error);
    return nil;
}

@end

@implementation ICCameraFolder
@end
