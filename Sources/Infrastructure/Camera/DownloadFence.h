// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>
#include <string>

namespace bildkurier {

/// Runs `action`, which makes or removes the file of a download in `folder`: one at a time for
/// each folder, whatever the devices, so that what is done before a session ends comes before
/// what the next session does. May wait for another such action, and with it for the disk. Any
/// thread.
void withDownloadFence(const std::string& folder, const std::function<void()>& action);

}  // namespace bildkurier
