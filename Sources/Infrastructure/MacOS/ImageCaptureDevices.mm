// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#import "ImageCaptureDevices.h"

#import "FoundationText.h"

#import <Foundation/Foundation.h>
#import <ImageCaptureCore/ImageCaptureCore.h>

#include <algorithm>
#include <chrono>
#include <utility>

#if !__has_feature(objc_arc) && !defined(GNUSTEP)
#error "needs -fobjc-arc"
#endif

using bildkurier::BrowserSink;
using bildkurier::Date;
using bildkurier::DeviceFacts;
using bildkurier::DeviceSink;
using bildkurier::DownloadRequest;
using bildkurier::Error;
using bildkurier::FileFacts;
using bildkurier::NativeDevice;
using bildkurier::NativeDownloadDone;
using bildkurier::NativeFile;
using bildkurier::NativeItem;
using bildkurier::stringOf;
using bildkurier::textOf;

namespace {

std::optional<Date> dateOf(NSDate* date) {
    if (date == nil) return std::nullopt;
    const std::chrono::duration<double> sinceEpoch(date.timeIntervalSince1970);
    return Date(std::chrono::round<Date::duration>(sinceEpoch));
}

std::optional<Error> errorOf(NSError* error) {
    if (error == nil) return std::nullopt;
    const std::string message = textOf(error.localizedDescription).value_or("");
    if (!message.empty()) return Error{message};
    return Error{"Fehler " + std::to_string(error.code)};
}

}  // namespace

/// The framework keeps its delegates weakly; this one belongs to a Device.
@interface BKDeviceDelegate : NSObject <ICCameraDeviceDelegate> {
@public
    std::weak_ptr<DeviceSink> sink;
}
@end

@implementation BKDeviceDelegate

- (void)device:(ICDevice*)device didOpenSessionWithError:(NSError*)error {
    if (const auto receiver = sink.lock()) receiver->sessionOpened(errorOf(error));
}
- (void)deviceDidBecomeReadyWithCompleteContentCatalog:(ICCameraDevice*)device {
    if (const auto receiver = sink.lock()) receiver->catalogReady();
}
- (void)cameraDevice:(ICCameraDevice*)camera didAddItems:(NSArray<ICCameraItem*>*)items {
    if (const auto receiver = sink.lock()) receiver->itemsAdded();
}
- (void)cameraDevice:(ICCameraDevice*)camera didRemoveItems:(NSArray<ICCameraItem*>*)items {
    if (const auto receiver = sink.lock()) receiver->itemsRemoved();
}

// The protocol requires these; an import needs none of them.
- (void)device:(ICDevice*)device didCloseSessionWithError:(NSError*)error {
}
- (void)didRemoveDevice:(ICDevice*)device {
}
- (void)cameraDevice:(ICCameraDevice*)camera didRenameItems:(NSArray<ICCameraItem*>*)items {
}
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveThumbnail:(CGImageRef)thumbnail
                forItem:(ICCameraItem*)item
                  error:(NSError*)error {
}
- (void)cameraDevice:(ICCameraDevice*)camera
    didReceiveMetadata:(NSDictionary*)metadata
               forItem:(ICCameraItem*)item
                 error:(NSError*)error {
}
- (void)cameraDevice:(ICCameraDevice*)camera didReceivePTPEvent:(NSData*)eventData {
}
- (void)cameraDeviceDidChangeCapability:(ICCameraDevice*)camera {
}
- (void)cameraDeviceDidRemoveAccessRestriction:(ICDevice*)device {
}
- (void)cameraDeviceDidEnableAccessRestriction:(ICDevice*)device {
}

@end

namespace {

class File final : public NativeFile {
public:
    explicit File(ICCameraFile* file) : file_(file) {}

    FileFacts facts() const override {
        return {.name = textOf(file_.name),
                .size = file_.fileSize,
                .created = dateOf(file_.creationDate),
                .fileCreated = dateOf(file_.fileCreationDate)};
    }

    std::vector<std::shared_ptr<NativeFile>> sidecars() const override {
        std::vector<std::shared_ptr<NativeFile>> files;
        for (ICCameraItem* item in file_.sidecarFiles) {
            if ([item isKindOfClass:[ICCameraFile class]])
                files.push_back(std::make_shared<File>((ICCameraFile*)item));
        }
        return files;
    }

    void download(const DownloadRequest& request, NativeDownloadDone done) override {
        NSDictionary<ICDownloadOption, id>* options = @{
            ICDownloadsDirectoryURL : [NSURL fileURLWithPath:stringOf(request.directory)
                                                 isDirectory:YES],
            ICSaveAsFilename : stringOf(request.saveAs),
            ICOverwrite : @(request.overwrite),
        };
        [file_ requestDownloadWithOptions:options
                               completion:^(NSString* name, NSError* error) {
                                 if (auto failure = errorOf(error)) {
                                     done(std::unexpected(*std::move(failure)));
                                 } else {
                                     done(textOf(name));
                                 }
                               }];
    }

private:
    ICCameraFile* file_;
};

class Device final : public NativeDevice {
public:
    explicit Device(ICCameraDevice* device)
        : device_(device), delegate_([[BKDeviceDelegate alloc] init]) {
        device_.delegate = delegate_;
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() override {
        if (device_.delegate == delegate_) device_.delegate = nil;
    }

    bool is(ICDevice* other) const { return [device_ isEqual:other]; }

    bool isCamera() const override { return true; }

    DeviceFacts facts() const override {
        return {.name = textOf(device_.name),
                .serial = textOf(device_.serialNumberString),
                .persistentId = textOf(device_.persistentIDString),
                .uuid = textOf(device_.UUIDString),
                .folder = std::nullopt};
    }

    std::vector<NativeItem> mediaFiles() const override {
        std::vector<NativeItem> items;
        for (ICCameraItem* item in device_.mediaFiles) {
            const bool isFile = [item isKindOfClass:[ICCameraFile class]];
            items.push_back({isFile ? std::make_shared<File>((ICCameraFile*)item) : nullptr});
        }
        return items;
    }

    void setSink(std::weak_ptr<DeviceSink> sink) override { delegate_->sink = std::move(sink); }
    void openSession() override { [device_ requestOpenSession]; }
    void closeSession() override { [device_ requestCloseSession]; }

private:
    ICCameraDevice* device_;
    BKDeviceDelegate* delegate_;
};

/// What the browser has found so far, and who hears of it.
struct Found {
    std::weak_ptr<BrowserSink> sink;
    std::vector<std::shared_ptr<Device>> devices;
    bool hasReported = false;
};

}  // namespace

@interface BKBrowserDelegate : NSObject <ICDeviceBrowserDelegate> {
@public
    std::shared_ptr<Found> found;
}
@end

@implementation BKBrowserDelegate

- (void)deviceBrowser:(ICDeviceBrowser*)browser
         didAddDevice:(ICDevice*)device
           moreComing:(BOOL)moreComing {
    // Nothing else has what a Device asks for.
    if (![device isKindOfClass:[ICCameraDevice class]]) return;
    const auto added = std::make_shared<Device>((ICCameraDevice*)device);
    found->devices.push_back(added);
    if (const auto receiver = found->sink.lock()) receiver->deviceAdded(added);
}

- (void)deviceBrowser:(ICDeviceBrowser*)browser
      didRemoveDevice:(ICDevice*)device
            moreGoing:(BOOL)moreGoing {
    auto& devices = found->devices;
    const auto known = std::ranges::find_if(devices, [&](const auto& d) { return d->is(device); });
    if (known == devices.end()) return;
    const auto removed = *known;
    devices.erase(known);
    if (const auto receiver = found->sink.lock()) receiver->deviceRemoved(removed);
}

- (void)deviceBrowserDidEnumerateLocalDevices:(ICDeviceBrowser*)browser {
    if (std::exchange(found->hasReported, true)) return;
    if (const auto receiver = found->sink.lock()) receiver->attachedDevicesReported();
}

@end

namespace bildkurier {

struct ImageCaptureDevices::Impl {
    ICDeviceBrowser* browser = [[ICDeviceBrowser alloc] init];
    BKBrowserDelegate* delegate = [[BKBrowserDelegate alloc] init];
};

ImageCaptureDevices::ImageCaptureDevices() : impl_(std::make_unique<Impl>()) {
    impl_->delegate->found = std::make_shared<Found>();
}

ImageCaptureDevices::~ImageCaptureDevices() {
    impl_->browser.delegate = nil;
    [impl_->browser stop];
}

void ImageCaptureDevices::start(std::weak_ptr<BrowserSink> sink) {
    impl_->delegate->found->sink = std::move(sink);
    impl_->browser.delegate = impl_->delegate;
    impl_->browser.browsedDeviceTypeMask =
        static_cast<ICDeviceTypeMask>(static_cast<NSUInteger>(ICDeviceTypeMaskCamera) |
                                      static_cast<NSUInteger>(ICDeviceLocationTypeMaskLocal));
    [impl_->browser start];
}

}  // namespace bildkurier
