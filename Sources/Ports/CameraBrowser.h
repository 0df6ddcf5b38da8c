// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraBrowserDelegate.h"

#include <memory>

namespace bildkurier {

/// Discovers cameras. Main thread.
class CameraBrowser {
public:
    virtual ~CameraBrowser() = default;

    /// Begins discovery; cameras that are attached already are reported as added.
    virtual void start(std::weak_ptr<CameraBrowserDelegate> delegate) = 0;
};

}  // namespace bildkurier
