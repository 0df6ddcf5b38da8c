// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraConnection.h"
#include "MainQueue.h"
#include "NativeCamera.h"
#include "UsbBus.h"
#include "UsbTiming.h"

#include <memory>

namespace bildkurier {

/// Cameras at the USB as devices, through libgphoto2. Each has a thread of its own; a camera
/// that hangs holds up neither the main thread nor the end.
class UsbCameras final : public NativeBrowser {
public:
    struct Options {
        UsbBus bus;
        UsbTiming timing;
        /// Asks whoever holds a camera to let go of it; absent: the desktop's file manager.
        CameraConnection::Release release;
    };

    /// `main` must outlive this.
    UsbCameras(MainQueue& main, Options options);
    ~UsbCameras() override;

    void start(std::weak_ptr<BrowserSink> sink) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
