// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImageCaptureBrowser.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

ImageCaptureBrowser::ImageCaptureBrowser(std::unique_ptr<NativeBrowser> browser)
    : browser_(std::move(browser)) {}

void ImageCaptureBrowser::start(std::weak_ptr<CameraBrowserDelegate> delegate) {
    delegate_ = std::move(delegate);
    browser_->start(weak_from_this());
}

void ImageCaptureBrowser::deviceAdded(std::shared_ptr<NativeDevice> device) {
    if (!device->isCamera()) return;
    const auto camera = cameras_.emplace_back(ImageCaptureCamera::make(std::move(device)));
    if (const auto delegate = delegate_.lock()) delegate->cameraBrowserDidAdd(camera);
}

void ImageCaptureBrowser::deviceIdentified(const std::shared_ptr<NativeDevice>& device) {
    const auto found = std::ranges::find(cameras_, device, &ImageCaptureCamera::device);
    if (found == cameras_.end()) return;
    const auto camera = *found;
    if (const auto delegate = delegate_.lock()) delegate->cameraBrowserDidIdentify(camera);
}

void ImageCaptureBrowser::deviceRemoved(const std::shared_ptr<NativeDevice>& device) {
    const auto found = std::ranges::find(cameras_, device, &ImageCaptureCamera::device);
    if (found == cameras_.end()) return;
    const auto camera = std::move(*found);
    cameras_.erase(found);
    if (const auto delegate = delegate_.lock()) delegate->cameraBrowserDidRemove(camera);
}

void ImageCaptureBrowser::attachedDevicesReported() { onAttachedCamerasReported(); }

}  // namespace bildkurier
