// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstddef>
#include <functional>

namespace bildkurier {

/// Runs `work` on `count` threads at once, this one among them; on fewer where there are no
/// more to be had. Each gets a number of its own below `count`. Blocks until all are done, and
/// throws what the first of them threw.
void runWorkers(std::size_t count, const std::function<void(std::size_t worker)>& work);

}  // namespace bildkurier
