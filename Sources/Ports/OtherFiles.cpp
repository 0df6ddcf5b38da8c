// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OtherFiles.h"

#include <ranges>

namespace bildkurier {

std::int64_t OtherFiles::sum(const Counts& counts) {
    std::int64_t all = 0;
    for (const std::int64_t some : counts | std::views::values) all += some;
    return all;
}

}  // namespace bildkurier
