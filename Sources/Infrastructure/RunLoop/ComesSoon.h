// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <chrono>
#include <thread>

namespace bildkurier {

/// Whether `isThere` comes true in the moment in which looking again costs less than falling
/// asleep and being woken. Other threads go first meanwhile.
template <class Condition>
bool comesSoon(Condition isThere) {
    constexpr std::chrono::microseconds moment(200);
    const auto end = std::chrono::steady_clock::now() + moment;
    while (!isThere()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::yield();
    }
    return true;
}

}  // namespace bildkurier
