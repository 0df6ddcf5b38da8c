// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CameraDelegate.h"
#include "NativeCamera.h"

#include <cstddef>
#include <memory>
#include <string>

namespace bildkurier {

/// A device as the import sees it: its lasting identity, its catalogue with the sidecars in
/// place, and those of its events that the import needs.
class ImageCaptureCamera final : public Camera,
                                 public DeviceSink,
                                 public std::enable_shared_from_this<ImageCaptureCamera> {
public:
    /// `device` must not be null. The camera makes itself the device's sink.
    static std::shared_ptr<ImageCaptureCamera> make(std::shared_ptr<NativeDevice> device);

    const std::shared_ptr<NativeDevice>& device() const { return device_; }

    std::string id() const override;
    std::optional<std::string> name() const override;
    std::optional<std::string> identity() const override;
    bool isIdentityFinal() const override;
    bool isKnownAs(const std::string& identity) const override;
    std::vector<std::shared_ptr<CameraFile>> files() const override;
    OtherFiles otherFiles() const override { return device_->otherFiles(); }
    void setDelegate(std::weak_ptr<CameraDelegate> delegate) override;
    void openSession() override;
    void closeSession() override;
    OverlapTest overlapTest() const override;
    SameFilesTest sameFilesTest() const override { return device_->sameFilesTest(); }

    void sessionOpened(const std::optional<Error>& error) override;
    void catalogGrows(std::size_t filesSoFar) override;
    void catalogReady() override;
    void itemsAdded() override;
    void itemsRemoved() override;

private:
    explicit ImageCaptureCamera(std::shared_ptr<NativeDevice> device);

    std::shared_ptr<NativeDevice> device_;
    std::weak_ptr<CameraDelegate> delegate_;
    std::string fallbackID_;  ///< random UUID, upper case; not lasting, so never an identity
};

}  // namespace bildkurier
