// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DownloadFence.h"

#include <mutex>

namespace bildkurier {

void withDownloadFence(const std::function<void()>& action) {
    // Never destroyed, for threads that hang.
    static std::mutex& fence = *new std::mutex;
    const std::lock_guard lock(fence);
    action();
}

}  // namespace bildkurier
