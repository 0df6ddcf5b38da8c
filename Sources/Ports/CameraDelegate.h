// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Error.h"

#include <cstddef>
#include <optional>

namespace bildkurier {

class Camera;

/// Receives one camera's events, on the main thread.
class CameraDelegate {
public:
    virtual ~CameraDelegate() = default;

    /// Without error the session is open; the catalogue follows.
    virtual void cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) = 0;

    /// Reading the catalogue takes time; so many files were seen so far. Only of some cameras.
    virtual void cameraCatalogGrows(Camera& camera, std::size_t filesSoFar) = 0;

    /// `Camera::files` is complete now.
    virtual void cameraCatalogReady(Camera& camera) = 0;

    /// Files came or went after the catalogue was complete.
    virtual void cameraCatalogChanged(Camera& camera) = 0;
};

}  // namespace bildkurier
