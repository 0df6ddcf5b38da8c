// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <limits>

namespace bildkurier {

/// The sum of two byte counts. It stops at the largest count instead of overflowing: a
/// damaged card may claim any size.
constexpr std::int64_t byteSum(std::int64_t a, std::int64_t b) {
    using Count = std::numeric_limits<std::int64_t>;
    if (b > 0 && a > Count::max() - b) return Count::max();
    if (b < 0 && a < Count::min() - b) return Count::min();
    return a + b;
}

}  // namespace bildkurier
