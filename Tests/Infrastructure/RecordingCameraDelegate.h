// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CameraDelegate.h"

#include <string>
#include <vector>

namespace bildkurier {

/// Writes down what it is told of cameras.
class RecordingCameraDelegate final : public CameraDelegate {
public:
    std::vector<std::string> events;
    std::vector<Camera*> senders;  ///< of each event

    void cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) override {
        note(camera, error ? "opened: " + error->message : "opened");
    }
    void cameraCatalogGrows(Camera& camera, std::size_t filesSoFar) override {
        note(camera, "grows to " + std::to_string(filesSoFar));
    }
    void cameraCatalogReady(Camera& camera) override { note(camera, "ready"); }
    void cameraCatalogChanged(Camera& camera) override { note(camera, "changed"); }

private:
    void note(Camera& camera, std::string event) {
        events.push_back(std::move(event));
        senders.push_back(&camera);
    }
};

}  // namespace bildkurier
