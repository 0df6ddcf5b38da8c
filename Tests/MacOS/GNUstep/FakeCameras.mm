// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// The framework's classes without anything behind them. Nothing here is ever released.
#import "FakeCameras.h"

ICDownloadOption const ICDownloadsDirectoryURL = @"ICDownloadsDirectoryURL";
ICDownloadOption const ICSaveAsFilename = @"ICSaveAsFilename";
ICDownloadOption const ICOverwrite = @"ICOverwrite";

@implementation ICDevice
@dynamic delegate, name, UUIDString, serialNumberString, persistentIDString, hasOpenSession;
- (void)requestOpenSession {
}
- (void)requestCloseSession {
}
- (void)requestOpenSessionWithOptions:(NSDictionary*)options
                           completion:(void (^)(NSError*))completion {
}
- (void)requestCloseSessionWithOptions:(NSDictionary*)options
                            completion:(void (^)(NSError*))completion {
}
@end

@implementation ICCameraDevice
@dynamic contentCatalogPercentCompleted, contents, mediaFiles, accessRestrictedAppleDevice;
- (void)cancelDownload {
}
@end

@implementation ICCameraItem
@dynamic device, name, UTI, creationDate, modificationDate, locked;
@end

@implementation ICCameraFile
@dynamic fileSize, sidecarFiles, pairedRawImage, fileCreationDate, exifCreationDate;
- (NSProgress*)requestDownloadWithOptions:(NSDictionary*)options
                               completion:(void (^)(NSString*, NSError*))completion {
    return nil;
}
@end

@implementation FakeICCamera
- (NSString*)name {
    return fakeName;
}
- (NSString*)serialNumberString {
    return serial;
}
- (NSString*)persistentIDString {
    return persistent;
}
- (NSString*)UUIDString {
    return uuid;
}
- (NSArray*)mediaFiles {
    return media;
}
- (id<ICDeviceDelegate>)delegate {
    return receiver;
}
- (void)setDelegate:(id<ICDeviceDelegate>)delegate {
    receiver = delegate;
}
- (void)requestOpenSession {
    ++opened;
}
- (void)requestCloseSession {
    ++closed;
}
@end

@implementation FakeICFile
- (NSString*)name {
    return fakeName;
}
- (off_t)fileSize {
    return size;
}
- (NSDate*)creationDate {
    return created;
}
- (NSDate*)fileCreationDate {
    return fileCreated;
}
- (NSArray*)sidecarFiles {
    return companions;
}
- (NSProgress*)requestDownloadWithOptions:(NSDictionary*)wanted
                               completion:(void (^)(NSString*, NSError*))completion {
    options = [wanted retain];
    void (^later)(NSString*, NSError*) = Block_copy(completion);
    later(failure ? nil : [wanted objectForKey:ICSaveAsFilename], failure);
    Block_release(later);
    return nil;
}
@end

namespace {

ICDeviceBrowser* browser;
id<ICDeviceBrowserDelegate> browserDelegate;
ICDeviceTypeMask browserMask;
BOOL browses;

}  // namespace

ICDeviceBrowser* lastBrowser() { return browser; }

@implementation ICDeviceBrowser
@dynamic devices;
- (instancetype)init {
    self = [super init];
    browser = self;
    return self;
}
- (id<ICDeviceBrowserDelegate>)delegate {
    return browserDelegate;
}
- (void)setDelegate:(id<ICDeviceBrowserDelegate>)delegate {
    browserDelegate = delegate;
}
- (ICDeviceTypeMask)browsedDeviceTypeMask {
    return browserMask;
}
- (void)setBrowsedDeviceTypeMask:(ICDeviceTypeMask)mask {
    browserMask = mask;
}
- (BOOL)isBrowsing {
    return browses;
}
- (void)start {
    browses = browserDelegate != nil;
}
- (void)stop {
    browses = NO;
}
@end
