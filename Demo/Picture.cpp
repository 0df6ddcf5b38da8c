// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Picture.h"

#include <cstddef>

namespace bildkurier {

Picture Picture::cut(int left, int newWidth) const {
    Picture part{newWidth, height, {}};
    for (int y = 0; y < height; ++y) {
        const auto begin = points.begin() + (std::ptrdiff_t{y} * width + left) * 3;
        part.points.insert(part.points.end(), begin, begin + std::ptrdiff_t{newWidth} * 3);
    }
    return part;
}

}  // namespace bildkurier
