// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "MainQueue.h"

#include <memory>
#include <type_traits>
#include <utility>

namespace bildkurier {

/// Runs `work` in the background and hands its result to `then` on the main queue. `main`
/// must outlive the background.
template <class Work, class Then>
void runThen(Background& background, MainQueue& main, Work work, Then then) {
    background.run([&main, work = std::move(work), then = std::move(then)]() mutable {
        auto result = std::make_shared<std::invoke_result_t<Work&>>(work());
        main.post([result, then = std::move(then)]() mutable { then(std::move(*result)); });
    });
}

}  // namespace bildkurier
