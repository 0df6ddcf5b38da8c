// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Picture.h"

namespace bildkurier {

/// A view of hills under a sky, the same for the same values.
struct Landscape {
    int seed = 0;        ///< shape and colour of the hills
    double hour = 12.0;  ///< time of day: light, and height of the sun or moon

    Picture draw(int width, int height) const;
};

}  // namespace bildkurier
