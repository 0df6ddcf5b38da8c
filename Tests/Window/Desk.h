// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramCall.h"
#include "RunningProgram.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bildkurier {

/// The display with a window manager, as someone sees it who works at it. Windows are known by
/// their numbers.
class Desk {
public:
    /// Throws where there is no window manager.
    Desk();

    /// All windows of the program, once there are so many; throws if there never are.
    static std::vector<std::string> windows(std::size_t count);
    /// The one that gets the keys; empty for none.
    static std::string active();
    /// What is in front in the middle of the display: a window's frame.
    static std::string inFront();
    static void bringToFront(const std::string& window);
    /// Asks the active one to close, as a close button does.
    static void close();

private:
    RunningProgram manager_;
};

}  // namespace bildkurier
