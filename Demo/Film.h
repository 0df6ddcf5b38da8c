// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <vector>

namespace bildkurier {

/// A Motion-JPEG film without sound.
struct Film {
    int width = 0;
    int height = 0;
    int framesPerSecond = 0;
    std::vector<std::string> frames;  ///< JPEG files of that size
};

/// The bytes of an AVI file.
std::string encodeAvi(const Film& film);

}  // namespace bildkurier
