// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraBrowser.h"
#include "ImageCaptureCamera.h"
#include "NativeCamera.h"

#include <functional>
#include <memory>
#include <vector>

namespace bildkurier {

/// Turns the devices of a native browser into cameras, and keeps them alive while attached.
class ImageCaptureBrowser final : public CameraBrowser,
                                  public BrowserSink,
                                  public std::enable_shared_from_this<ImageCaptureBrowser> {
public:
    explicit ImageCaptureBrowser(std::unique_ptr<NativeBrowser> browser);

    void start(std::weak_ptr<CameraBrowserDelegate> delegate) override;

    /// Called once the cameras attached at the start have been reported.
    std::function<void()> onAttachedCamerasReported = [] {};

    void deviceAdded(std::shared_ptr<NativeDevice> device) override;
    void deviceIdentified(const std::shared_ptr<NativeDevice>& device) override;
    void deviceRemoved(const std::shared_ptr<NativeDevice>& device) override;
    void attachedDevicesReported() override;

private:
    std::weak_ptr<CameraBrowserDelegate> delegate_;
    std::unique_ptr<NativeBrowser> browser_;
    std::vector<std::shared_ptr<ImageCaptureCamera>> cameras_;  ///< in the order reported
};

}  // namespace bildkurier
