// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"

#include <memory>

namespace bildkurier {

/// Learns of cameras that come and go, on the main thread.
class CameraBrowserDelegate {
public:
    virtual ~CameraBrowserDelegate() = default;

    virtual void cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) = 0;

    /// The identity of a camera that was added has changed, or is final now.
    virtual void cameraBrowserDidIdentify(const std::shared_ptr<Camera>& camera) = 0;

    /// `camera` is the object that was added.
    virtual void cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) = 0;
};

}  // namespace bildkurier
