// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "FileName.h"

#include <string>

namespace bildkurier {

constexpr auto namelessCamera = "Kamera";

/// What people see of a camera: its name, or "Kamera" when it has none.
inline std::string displayName(const Camera& camera) {
    return displayText(camera.name().value_or(namelessCamera));
}

/// Whether the user can mean this camera by `nameOrIdentity`.
inline bool answersTo(const Camera& camera, const std::string& nameOrIdentity) {
    return camera.name().value_or(namelessCamera) == nameOrIdentity ||
           displayName(camera) == nameOrIdentity || camera.isKnownAs(nameOrIdentity);
}

}  // namespace bildkurier
