// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "FileStore.h"
#include "SettingsStore.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace bildkurier {

/// The rule that one trusted camera is imported whenever it is connected: who it is, kept in
/// the settings, and whether it has just arrived. Main thread.
class AutoImport {
public:
    AutoImport(std::shared_ptr<SettingsStore> settings, std::shared_ptr<FileStore> fileStore);

    /// The trusted camera's name for human eyes, "Kamera" when none is stored.
    std::string trustedName() const;

    /// Whether there is a camera to import whenever it is connected.
    bool trustsCamera() const;

    /// Trusts this camera, and no other any more. False, and nothing stored, when it has no
    /// final identity.
    bool enable(const Camera& camera);

    /// A camera was connected: whether it is the trusted one, whose import is then pending.
    bool cameraConnected(const Camera& camera);

    /// Takes up the pending import: whether it is this camera's, and the rule still on.
    bool consumePending(const Camera& camera);

    /// The camera, other than `current`, whose import is pending.
    std::shared_ptr<Camera> waitingCamera(std::span<const std::shared_ptr<Camera>> cameras,
                                          const std::shared_ptr<Camera>& current) const;

    void clearPending() { pendingIdentity_.reset(); }

private:
    std::shared_ptr<SettingsStore> settings_;
    std::shared_ptr<FileStore> fileStore_;
    std::optional<std::string> pendingIdentity_;
};

}  // namespace bildkurier
