// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <rapidcheck.h>

#include <string>

namespace bildkurier {

/// Any bytes, above all those that names stumble over: control characters, slashes, dots, and
/// the beginnings and ends of multi-byte characters.
inline rc::Gen<std::string> untrustedText() {
    const auto byte = [](int value) { return static_cast<char>(value); };
    return rc::gen::container<std::string>(rc::gen::oneOf(
        rc::gen::map(rc::gen::inRange(0, 256), byte), rc::gen::inRange('a', 'f'),
        rc::gen::map(rc::gen::element(0x00, 0x0A, 0x1F, '.', '/', 0x7F, 0x80, 0x85, 0x9F, 0xA0,
                                      0xC2, 0xC3, 0xE2, 0xED, 0xEF, 0xF0, 0xFF),
                     byte)));
}

}  // namespace bildkurier
