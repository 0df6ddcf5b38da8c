// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AutoImport.h"

#include "CameraName.h"
#include "FileName.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

AutoImport::AutoImport(std::shared_ptr<SettingsStore> settings,
                       std::shared_ptr<FileStore> fileStore)
    : settings_(std::move(settings)), fileStore_(std::move(fileStore)) {}

std::string AutoImport::trustedName() const {
    // Anybody may have written it into the settings.
    return displayText(settings_->autoImportCameraName().value_or(namelessCamera));
}

bool AutoImport::trustsCamera() const {
    const auto identity = settings_->autoImportCameraIdentity();
    return settings_->autoImportEnabled() && identity && !identity->empty();
}

bool AutoImport::enable(const Camera& camera) {
    const auto identity = camera.identity();
    if (!identity || !camera.isIdentityFinal()) return false;
    settings_->setAutoImportEnabled(true);
    settings_->setAutoImportCameraIdentity(*identity);
    settings_->setAutoImportCameraName(camera.name().value_or(namelessCamera));
    return true;
}

bool AutoImport::cameraConnected(const Camera& camera) {
    const auto identity = camera.identity();
    if (!settings_->autoImportEnabled() || !identity ||
        identity != settings_->autoImportCameraIdentity()) {
        return false;
    }
    pendingIdentity_ = identity;
    return true;
}

bool AutoImport::consumePending(const Camera& camera) {
    const auto pending = std::exchange(pendingIdentity_, std::nullopt);
    return pending && settings_->autoImportEnabled() && camera.isIdentityFinal() &&
           camera.identity() == pending && settings_->autoImportCameraIdentity() == pending;
}

std::shared_ptr<Camera> AutoImport::waitingCamera(std::span<const std::shared_ptr<Camera>> cameras,
                                                  const std::shared_ptr<Camera>& current) const {
    if (!settings_->autoImportEnabled() || !pendingIdentity_) return nullptr;
    const auto waiting = std::ranges::find_if(cameras, [&](const auto& camera) {
        return camera->identity() == pendingIdentity_ && camera != current;
    });
    return waiting == cameras.end() ? nullptr : *waiting;
}

}  // namespace bildkurier
