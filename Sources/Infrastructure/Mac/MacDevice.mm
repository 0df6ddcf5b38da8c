// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MacDevice.h"

#include "FoundationValues.h"
#include "MacFile.h"

#include <utility>

using namespace bildkurier;

/// Passes on what the seam knows. The rest is required by the protocol: that a device has gone is
/// learnt from the browser, and a closed session from nobody.
@interface BildkurierDeviceListener : NSObject <ICCameraDeviceDelegate> {
@public
    std::weak_ptr<DeviceSink> _sink;
}
@end

@implementation BildkurierDeviceListener

- (void)device:(ICDevice*)device didOpenSessionWithError:(NSError*)error {
    if (const auto sink = _sink.lock())
        sink->sessionOpened(error == nil ? std::nullopt : std::optional(errorOf(error)));
}

- (void)deviceDidBecomeReadyWithCompleteContentCatalog:(ICCameraDevice*)device {
    if (const auto sink = _sink.lock()) sink->catalogReady();
}

- (void)cameraDevice:(ICCameraDevice*)camera didAddItems:(NSArray<ICCameraItem*>*)items {
    if (const auto sink = _sink.lock()) sink->itemsAdded();
}

- (void)cameraDevice:(ICCameraDevice*)camera didRemoveItems:(NSArray<ICCameraItem*>*)items {
    if (const auto sink = _sink.lock()) sink->itemsRemoved();
}

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

namespace bildkurier {

MacDevice::MacDevice(ICDevice* device, std::shared_ptr<CompletionGate> gate)
    : device_(device), gate_(std::move(gate)), listener_([[BildkurierDeviceListener alloc] init]) {}

MacDevice::~MacDevice() {
    // The device does not keep its delegate alive, and may outlive this.
    if (device_.delegate == listener_) device_.delegate = nil;
}

bool MacDevice::stands(ICDevice* device) const { return [device_ isEqual:device]; }

bool MacDevice::isCamera() const { return [device_ isKindOfClass:[ICCameraDevice class]]; }

DeviceFacts MacDevice::facts() const {
    return {.name = textOf(device_.name),
            .serial = textOf(device_.serialNumberString),
            .persistentId = textOf(device_.persistentIDString),
            .uuid = textOf(device_.UUIDString)};
}

std::vector<NativeItem> MacDevice::mediaFiles() const {
    if (!isCamera()) return {};
    return nativeItems(static_cast<ICCameraDevice*>(device_).mediaFiles, gate_);
}

void MacDevice::setSink(std::weak_ptr<DeviceSink> sink) {
    listener_->_sink = std::move(sink);
    device_.delegate = listener_;
}

void MacDevice::openSession() { [device_ requestOpenSession]; }

void MacDevice::closeSession() { [device_ requestCloseSession]; }

}  // namespace bildkurier
