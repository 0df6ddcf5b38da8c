// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CameraDelegate.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// A camera that does as the test says.
class FakeCamera final : public Camera {
public:
    explicit FakeCamera(std::string cameraId) : deviceId(std::move(cameraId)) {}

    std::string deviceId;
    std::optional<std::string> deviceName;
    std::optional<std::string> deviceIdentity;
    bool identityIsFinal = true;
    std::optional<std::string> formerIdentity;
    std::vector<std::shared_ptr<CameraFile>> catalogue;
    OtherFiles others;
    std::weak_ptr<CameraDelegate> delegate;
    std::optional<Url> folder;  ///< that it is; overlaps itself only
    bool holdsSameFiles = true;
    int opened = 0;  ///< sessions asked for
    int closed = 0;

    void sessionOpened(const std::optional<Error>& error = std::nullopt);
    void catalogReady();
    void catalogChanged();

    std::string id() const override { return deviceId; }
    std::optional<std::string> name() const override { return deviceName; }
    std::optional<std::string> identity() const override { return deviceIdentity; }
    bool isIdentityFinal() const override { return identityIsFinal; }
    bool isKnownAs(const std::string& identity) const override {
        return deviceIdentity == identity || formerIdentity == identity;
    }
    std::vector<std::shared_ptr<CameraFile>> files() const override { return catalogue; }
    OtherFiles otherFiles() const override { return others; }
    void setDelegate(std::weak_ptr<CameraDelegate> to) override { delegate = std::move(to); }
    void openSession() override { ++opened; }
    void closeSession() override { ++closed; }
    OverlapTest overlapTest() const override {
        return [own = folder](const Url& with) { return own == with; };
    }
    SameFilesTest sameFilesTest() const override {
        return [this] { return holdsSameFiles; };
    }
};

}  // namespace bildkurier
