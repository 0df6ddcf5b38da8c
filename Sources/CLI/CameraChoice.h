// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Camera.h"
#include "CommandLine.h"
#include "Result.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// What ends with it, ends for this reason.
inline constexpr auto lostCamera = "Die Kamera wurde getrennt.";

/// Of the cameras that are attached those that the user means, at least one; or why none.
Result<std::deque<std::shared_ptr<Camera>>> chooseCameras(
    const CommandLine& commandLine, const std::vector<std::shared_ptr<Camera>>& cameras);

/// What to tell of a camera that cannot say yet who it is, if there is one.
std::optional<std::string> unknownIdentity(const std::vector<std::shared_ptr<Camera>>& cameras);

/// Fails where no camera is attached, or a folder that the user means is none of them.
Result<> checkAttached(const CommandLine& commandLine,
                       const std::vector<std::shared_ptr<Camera>>& cameras);

}  // namespace bildkurier
