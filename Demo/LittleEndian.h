// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <concepts>
#include <cstddef>
#include <string>

namespace bildkurier {

/// The bytes of `value`, least significant first.
template <std::unsigned_integral Number>
std::string littleEndian(Number value) {
    std::string bytes;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes += static_cast<char>((value >> (8 * i)) & 0xFFU);
    }
    return bytes;
}

}  // namespace bildkurier
