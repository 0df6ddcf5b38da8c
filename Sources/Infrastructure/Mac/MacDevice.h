// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CompletionGate.h"
#include "NativeCamera.h"

#import <ImageCaptureCore/ImageCaptureCore.h>

#include <memory>
#include <vector>

@class BildkurierDeviceListener;

namespace bildkurier {

/// A device that the system's image capture service has reported.
class MacDevice final : public NativeDevice {
public:
    MacDevice(ICDevice* _Nonnull device, std::shared_ptr<CompletionGate> gate);
    MacDevice(const MacDevice&) = delete;
    MacDevice& operator=(const MacDevice&) = delete;
    ~MacDevice() override;

    bool stands(ICDevice* _Nonnull device) const;

    bool isCamera() const override;
    DeviceFacts facts() const override;
    std::vector<NativeItem> mediaFiles() const override;
    void setSink(std::weak_ptr<DeviceSink> sink) override;
    void openSession() override;
    void closeSession() override;

private:
    ICDevice* _Nonnull device_;
    std::shared_ptr<CompletionGate> gate_;
    BildkurierDeviceListener* _Nonnull listener_;
};

}  // namespace bildkurier
