// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once
#import <Foundation/Foundation.h>
#ifndef API_AVAILABLE_MACOS
#define API_AVAILABLE_MACOS(v)
#endif
#ifndef NS_TYPED_ENUM
#define NS_TYPED_ENUM
#endif
typedef struct CGImage* CGImageRef;
NS_ASSUME_NONNULL_BEGIN
@class ICDeviceBrowser, ICDevice, ICCameraDevice, ICCameraFile, ICCameraItem, ICCameraFolder;
typedef NS_ENUM(NSUInteger, ICDeviceTypeMask) {
    ICDeviceTypeMaskCamera = 0x1,
    ICDeviceTypeMaskScanner = 0x2
};
typedef NS_ENUM(NSUInteger, ICDeviceLocationTypeMask) {
    ICDeviceLocationTypeMaskLocal = 0x100,
    ICDeviceLocationTypeMaskShared = 0x200,
    ICDeviceLocationTypeMaskBonjour = 0x400,
    ICDeviceLocationTypeMaskBluetooth = 0x800,
    ICDeviceLocationTypeMaskRemote = 0xFE00
};
typedef NSString* ICDownloadOption NS_TYPED_ENUM;
typedef NSString* ICSessionOptions NS_TYPED_ENUM;
extern "C" ICDownloadOption const ICDownloadsDirectoryURL;
extern "C" ICDownloadOption const ICSaveAsFilename;
extern "C" ICDownloadOption const ICSavedFilename;
extern "C" ICDownloadOption const ICOverwrite;
extern "C" ICDownloadOption const ICDeleteAfterSuccessfulDownload;
extern "C" ICDownloadOption const ICDownloadSidecarFiles;

@protocol ICDeviceDelegate <NSObject>
@required
- (void)device:(ICDevice*)device didOpenSessionWithError:(NSError* _Nullable)error;
- (void)device:(ICDevice*)device didCloseSessionWithError:(NSError* _Nullable)error;
- (void)didRemoveDevice:(ICDevice*)device;
@optional
- (void)deviceDidBecomeReady:(ICDevice*)device;
- (void)deviceDidChangeName:(ICDevice*)device;
- (void)device:(ICDevice*)device didEncounterError:(NSError* _Nullable)error;
- (void)device:(ICDevice*)device didEjectWithError:(NSError* _Nullable)error;
@end
@protocol ICCameraDeviceDelegate <ICDeviceDelegate>
@required
- (void)cameraDevice:(ICCameraDevice*)camera didAddItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDevice:(ICCameraDevice*)camera didRemoveItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveThumbnail:(CGImageRef _Nullable)thumbnail
                forItem:(ICCameraItem*)item
                  error:(NSError* _Nullable)error;
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveMetadata:(NSDictionary* _Nullable)metadata
               forItem:(ICCameraItem*)item
                 error:(NSError* _Nullable)error;
- (void)cameraDevice:(ICCameraDevice*)camera didRenameItems:(NSArray<ICCameraItem*>*)items;
- (void)cameraDeviceDidChangeCapability:(ICCameraDevice*)camera;
- (void)cameraDevice:(ICCameraDevice*)camera didReceivePTPEvent:(NSData*)eventData;
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
- (void)deviceBrowser:(ICDeviceBrowser*)browser deviceDidChangeName:(ICDevice*)device;
- (void)deviceBrowserDidEnumerateLocalDevices:(ICDeviceBrowser*)browser;
@end
@interface ICDeviceBrowser : NSObject
@property(nonatomic, readwrite, assign, nullable) id<ICDeviceBrowserDelegate> delegate;
@property(nonatomic, readonly, getter=isBrowsing) BOOL browsing;
@property(nonatomic, readwrite) ICDeviceTypeMask browsedDeviceTypeMask;
@property(nonatomic, readonly, nullable) NSArray<ICDevice*>* devices;
- (instancetype)init;
- (void)start;
- (void)stop;
@end
@interface ICDevice : NSObject
@property(nonatomic, readwrite, assign, nullable) id<ICDeviceDelegate> delegate;
@property(nonatomic, readonly, nullable) NSString* name;
@property(nonatomic, readonly, nullable) NSString* UUIDString;
@property(nonatomic, readonly, nullable) NSString* serialNumberString;
@property(nonatomic, readonly, nullable) NSString* persistentIDString;
@property(nonatomic, readonly) BOOL hasOpenSession;
- (void)requestOpenSession;
- (void)requestCloseSession;
- (void)requestOpenSessionWithOptions:(NSDictionary<ICSessionOptions, id>* _Nullable)options
                           completion:(void (^)(NSError* _Nullable error))completion
    API_AVAILABLE_MACOS(10.15);
- (void)requestCloseSessionWithOptions:(NSDictionary<ICSessionOptions, id>* _Nullable)options
                            completion:(void (^)(NSError* _Nullable error))completion
    API_AVAILABLE_MACOS(10.15);
@end
@interface ICCameraDevice : ICDevice
@property(nonatomic, readonly) NSUInteger contentCatalogPercentCompleted;
@property(nonatomic, readonly, nullable) NSArray<ICCameraItem*>* contents;
@property(nonatomic, readonly, nullable) NSArray<ICCameraItem*>* mediaFiles;
@property(nonatomic, readonly, getter=isAccessRestrictedAppleDevice)
    BOOL accessRestrictedAppleDevice API_AVAILABLE_MACOS(10.15);
- (void)cancelDownload;
@end
@interface ICCameraItem : NSObject
@property(nonatomic, readonly, nullable) ICCameraDevice* device;
@property(nonatomic, readonly, nullable) NSString* name;
@property(nonatomic, readonly, nullable) NSString* UTI;
@property(nonatomic, readonly, nullable) NSDate* creationDate;
@property(nonatomic, readonly, nullable) NSDate* modificationDate;
@property(nonatomic, readonly, getter=isLocked) BOOL locked;
@end
@interface ICCameraFile : ICCameraItem
@property(nonatomic, readonly) off_t fileSize;
@property(nonatomic, readonly, nullable) NSArray<ICCameraItem*>* sidecarFiles;
@property(nonatomic, readonly, nullable) ICCameraFile* pairedRawImage;
@property(nonatomic, readonly, nullable) NSDate* fileCreationDate;
@property(nonatomic, readonly, nullable) NSDate* exifCreationDate;
- (NSProgress* _Nullable)requestDownloadWithOptions:
                             (NSDictionary<ICDownloadOption, id>* _Nullable)options
                                         completion:(void (^)(NSString* _Nullable filename,
                                                              NSError* _Nullable error))completion
    API_AVAILABLE_MACOS(10.15);
@end
NS_ASSUME_NONNULL_END
