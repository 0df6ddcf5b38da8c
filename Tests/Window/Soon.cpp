// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Soon.h"

#include <glib.h>

#include <chrono>

namespace bildkurier {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto patience = std::chrono::seconds(20);

}  // namespace

void listen() {
    bool over = false;
    g_timeout_add(
        50,
        [](gpointer flag) -> gboolean {
            *static_cast<bool*>(flag) = true;
            return G_SOURCE_REMOVE;
        },
        &over);
    while (!over) g_main_context_iteration(nullptr, TRUE);
}

bool soon(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > deadline) return false;
        listen();
    }
    return true;
}

}  // namespace bildkurier
