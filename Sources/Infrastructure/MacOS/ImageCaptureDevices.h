// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <memory>

namespace bildkurier {

/// The cameras that the image-capture framework finds on this computer, as devices.
class ImageCaptureDevices final : public NativeBrowser {
public:
    ImageCaptureDevices();
    ImageCaptureDevices(const ImageCaptureDevices&) = delete;
    ImageCaptureDevices& operator=(const ImageCaptureDevices&) = delete;
    ~ImageCaptureDevices() override;

    void start(std::weak_ptr<BrowserSink> sink) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
