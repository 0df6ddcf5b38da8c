// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <vector>

namespace bildkurier {

/// Colours of the points, row by row from the top, three bytes (red, green, blue) each.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> points;

    /// The part `newWidth` wide that begins `left` points from the left.
    Picture cut(int left, int newWidth) const;
};

}  // namespace bildkurier
