// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraWorker.h"
#include "Guard.h"
#include "NativeCamera.h"
#include "UsbContents.h"
#include "UsbPlace.h"

#include <memory>
#include <optional>

namespace bildkurier {

/// A camera at the USB as a device. Main thread.
class UsbDevice final : public NativeDevice {
public:
    UsbDevice(UsbPlace place, std::shared_ptr<CameraWorker> worker);
    UsbDevice(const UsbDevice&) = delete;
    UsbDevice& operator=(const UsbDevice&) = delete;
    ~UsbDevice() override;

    const UsbPlace& place() const { return place_; }
    const std::shared_ptr<CameraWorker>& worker() const { return worker_; }

    bool isIdentified() const { return facts_.has_value(); }
    void identified(DeviceFacts facts) { facts_ = std::move(facts); }

    bool isCamera() const override { return true; }
    DeviceFacts facts() const override { return facts_.value_or(DeviceFacts()); }
    std::vector<NativeItem> mediaFiles() const override;
    OtherFiles otherFiles() const override;
    void setSink(std::weak_ptr<DeviceSink> sink) override { sink_ = std::move(sink); }
    void openSession() override;
    /// Downloads under way fail at once.
    void closeSession() override { endSession(UsbSession::End::Closed); }
    /// The same for good: the camera is there no more, or nobody wants it.
    void end(UsbSession::End how);

private:
    void endSession(UsbSession::End how);
    void show(CardCatalogue catalogue);

    UsbPlace place_;
    std::shared_ptr<CameraWorker> worker_;
    std::optional<DeviceFacts> facts_;
    std::weak_ptr<DeviceSink> sink_;
    std::shared_ptr<UsbSession> session_;  ///< null while closed
    std::shared_ptr<const UsbContents> contents_;
    Guard answers_;  ///< of this session
};

}  // namespace bildkurier
