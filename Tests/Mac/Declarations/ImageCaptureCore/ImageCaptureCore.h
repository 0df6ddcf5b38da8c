// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

// The part of the framework that this program uses; see Foundation/Foundation.h.

#import <Foundation/Foundation.h>

#ifndef API_AVAILABLE_MACOS
#define API_AVAILABLE_MACOS(version)
#endif
#ifndef NS_TYPED_ENUM
#define NS_TYPED_ENUM
#endif

typedef struct CGImage* CGImageRef;

NS_ASSUME_NONNULL_BEGIN

@class ICDeviceBrowser, ICDevice, ICCameraDevice, ICCameraItem;

typedef NS_ENUM(NSUInteger, ICDeviceTypeMask) {
    ICDeviceTypeMaskCamera = 0x00000001,
    ICDeviceTypeMaskScanner = 0x00000002,
};

typedef NS_ENUM(NSUInteger, ICDeviceLocationTypeMask) {
    ICDeviceLocationTypeMaskLocal = 0x00000100,
    ICDeviceLocationTypeMaskShared = 0x00000200,
    ICDeviceLocationTypeMaskBonjour = 0x00000400,
    ICDeviceLocationTypeMaskBluetooth = 0x00000800,
    ICDeviceLocationTypeMaskRemote = 0x0000FE00,
};

typedef NSString* ICDownloadOption NS_TYPED_ENUM;
extern "C" ICDownloadOption const ICDownloadsDirectoryURL;
extern "C" ICDownloadOption const ICSaveAsFilename;
extern "C" ICDownloadOption const ICOverwrite;

@protocol ICDeviceDelegate <NSObject>
@required
- (void)device:(ICDevice*)device didOpenSessionWithError:(nullable NSError*)error;
- (void)device:(ICDevice*)device didCloseSessionWithError:(nullable NSError*)error;
- (void)didRemoveDevice:(ICDevice*)device;
@optional
- (void)deviceDidBecomeReady:(ICDevice*)device;
- (void)device:(ICDevice*)device didEncounterError:(nullable NSError*)error;
@end

@protocol ICCameraDeviceDelegate <ICDeviceDelegate>
@required
- (void)cameraDevice:(ICCameraDevice*)camera didAddItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDevice:(ICCameraDevice*)camera didRemoveItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDevice:(ICCameraDevice*)camera didRenameItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveThumbnail:(nullable CGImageRef)thumbnail
                forItem:(ICCameraItem*)item
                  error:(nullable NSError*)error;
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveMetadata:(nullable NSDictionary*)metadata
               forItem:(ICCameraItem*)item
                 error:(nullable NSError*)error;
- (void)cameraDevice:(ICCameraDevice*)camera didReceivePTPEvent:(NSData*)eventData;
- (void)cameraDeviceDidChangeCapability:(ICCameraDevice*)camera;
- (void)deviceDidBecomeReadyWithCompleteContentCatalog:(ICCameraDevice*)device;
- (void)cameraDeviceDidRemoveAccessRestriction:(ICDevice*)device;
- (void)cameraDeviceDidEnableAccessRestriction:(ICDevice*)device;
@end

@protocol ICDeviceBrowserDelegate <NSObject>
@required
- (void)deviceBrowser:(ICDeviceBrowser*)browser
         didAddDevice:(ICDevice*)device
           moreComing:(BOOL)moreComing;
- (void)deviceBrowser:(ICDeviceBrowser*)browser
      didRemoveDevice:(ICDevice*)device
            moreGoing:(BOOL)moreGoing;
@optional
- (void)deviceBrowserDidEnumerateLocalDevices:(ICDeviceBrowser*)browser;
@end

@interface ICDeviceBrowser : NSObject
@property(nonatomic, assign, nullable) id<ICDeviceBrowserDelegate> delegate;
@property(nonatomic, readonly, getter=isBrowsing) BOOL browsing;
@property(nonatomic) ICDeviceTypeMask browsedDeviceTypeMask;
- (void)start;
- (void)stop;
@end

@interface ICDevice : NSObject
@property(nonatomic, assign, nullable) id<ICDeviceDelegate> delegate;
@property(nonatomic, readonly, nullable) NSString* name;
@property(nonatomic, readonly, nullable) NSString* UUIDString;
@property(nonatomic, readonly, nullable) NSString* serialNumberString;
@property(nonatomic, readonly, nullable) NSString* persistentIDString;
- (void)requestOpenSession;
- (void)requestCloseSession;
@end

@interface ICCameraDevice : ICDevice
@property(nonatomic, readonly, nullable) NSArray<ICCameraItem*>* mediaFiles;
@end

@interface ICCameraItem : NSObject
@property(nonatomic, readonly, nullable) NSString* name;
@property(nonatomic, readonly, nullable) NSDate* creationDate;
@end

@interface ICCameraFile : ICCameraItem
@property(nonatomic, readonly) off_t fileSize;
@property(nonatomic, readonly, nullable) NSArray<ICCameraItem*>* sidecarFiles;
@property(nonatomic, readonly, nullable) NSDate* fileCreationDate;
- (nullable NSProgress*)requestDownloadWithOptions:
                            (nullable NSDictionary<ICDownloadOption, id>*)options
                                        completion:(void (^)(NSString* _Nullable filename,
                                                             NSError* _Nullable error))completion
    API_AVAILABLE_MACOS(10.15);
@end

@interface ICCameraFolder : ICCameraItem
@end

NS_ASSUME_NONNULL_END
