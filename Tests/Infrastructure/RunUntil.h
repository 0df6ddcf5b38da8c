// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "EventLoop.h"

#include <functional>

namespace bildkurier {

/// Runs the loop until this is so, and asks for it every millisecond. Whether it came about
/// within a minute.
inline bool runUntil(EventLoop& loop, const std::function<bool()>& reached) {
    bool isLate = false;
    const Handle look = loop.every(Duration(0.001), [&] {
        if (reached()) loop.stop();
    });
    const Handle deadline = loop.after(Duration(60), [&] {
        isLate = true;
        loop.stop();
    });
    while (!reached() && !isLate) loop.run();
    return !isLate;
}

}  // namespace bildkurier
