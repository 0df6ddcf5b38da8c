// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraBrowserDelegate.h"

#include <memory>
#include <vector>

namespace bildkurier {

/// Writes down which cameras came and went.
class RecordingBrowserDelegate final : public CameraBrowserDelegate {
public:
    std::vector<std::shared_ptr<Camera>> added;
    std::vector<std::shared_ptr<Camera>> identified;
    std::vector<std::shared_ptr<Camera>> removed;

    void cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) override {
        added.push_back(camera);
    }
    void cameraBrowserDidIdentify(const std::shared_ptr<Camera>& camera) override {
        identified.push_back(camera);
    }
    void cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) override {
        removed.push_back(camera);
    }
};

}  // namespace bildkurier
