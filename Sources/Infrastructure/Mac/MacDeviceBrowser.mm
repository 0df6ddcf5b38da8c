// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MacDeviceBrowser.h"

#include "MacDevice.h"

#import <ImageCaptureCore/ImageCaptureCore.h>

#include <algorithm>
#include <utility>
#include <vector>

using namespace bildkurier;

/// Knows which of our devices stands for which of the service's.
@interface BildkurierBrowserListener : NSObject <ICDeviceBrowserDelegate> {
@public
    std::weak_ptr<BrowserSink> _sink;
    std::vector<std::shared_ptr<MacDevice>> _attached;
    std::shared_ptr<CompletionGate> _gate;
    bool _hasReported;
}
@end

@implementation BildkurierBrowserListener

- (void)deviceBrowser:(ICDeviceBrowser*)browser
         didAddDevice:(ICDevice*)device
           moreComing:(BOOL)moreComing {
    const auto added = _attached.emplace_back(std::make_shared<MacDevice>(device, _gate));
    if (const auto sink = _sink.lock()) sink->deviceAdded(added);
}

- (void)deviceBrowser:(ICDeviceBrowser*)browser
      didRemoveDevice:(ICDevice*)device
            moreGoing:(BOOL)moreGoing {
    const auto found =
        std::ranges::find_if(_attached, [&](const auto& each) { return each->stands(device); });
    if (found == _attached.end()) return;
    const auto removed = std::move(*found);
    _attached.erase(found);
    if (const auto sink = _sink.lock()) sink->deviceRemoved(removed);
}

- (void)deviceBrowserDidEnumerateLocalDevices:(ICDeviceBrowser*)browser {
    if (std::exchange(_hasReported, true)) return;
    if (const auto sink = _sink.lock()) sink->attachedDevicesReported();
}

@end

namespace bildkurier {

struct MacDeviceBrowser::Service {
    ICDeviceBrowser* browser = [[ICDeviceBrowser alloc] init];
    BildkurierBrowserListener* listener = [[BildkurierBrowserListener alloc] init];
};

MacDeviceBrowser::MacDeviceBrowser() : service_(std::make_unique<Service>()) {
    service_->listener->_gate = std::make_shared<CompletionGate>();
}

MacDeviceBrowser::~MacDeviceBrowser() {
    // The service does not keep its delegate alive.
    service_->browser.delegate = nil;
    if (service_->browser.browsing) [service_->browser stop];
    // A download under way may still end.
    service_->listener->_gate->close();
}

void MacDeviceBrowser::start(std::weak_ptr<BrowserSink> sink) {
    service_->listener->_sink = std::move(sink);
    service_->browser.delegate = service_->listener;
    // One number of two enumerations: which devices, and where.
    service_->browser.browsedDeviceTypeMask =
        static_cast<ICDeviceTypeMask>(static_cast<NSUInteger>(ICDeviceTypeMaskCamera) |
                                      static_cast<NSUInteger>(ICDeviceLocationTypeMaskLocal));
    [service_->browser start];
}

}  // namespace bildkurier
