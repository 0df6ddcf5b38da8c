// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileName.h"

#include "IcuText.h"

#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>

namespace bildkurier {
namespace {

constexpr std::size_t longestFileName = 255;  // bytes, on every file system in use

/// Whether a character shows nothing itself, and may change what stands round it.
bool isInvisible(UChar32 c) {
    constexpr UChar32 zeroWidthNonJoiner = 0x200C;
    constexpr UChar32 zeroWidthJoiner = 0x200D;
    if (c == zeroWidthNonJoiner || c == zeroWidthJoiner)
        return false;  // scripts and emoji need them
    constexpr auto invisible =
        U_GC_CC_MASK | U_GC_CF_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK | U_GC_CS_MASK | U_GC_CN_MASK;
    return (U_MASK(u_charType(c)) & invisible) != 0;
}

UChar32 visible(UChar32 c) {
    if (c < 0x20) return 0x2400 + c;
    if (c == 0x7F) return 0x2421;
    return isInvisible(c) ? 0xFFFD : c;
}

}  // namespace

std::string_view lastPathComponent(std::string_view path) {
    const auto last = path.find_last_not_of('/');
    if (last == std::string_view::npos) return path.substr(0, 1);
    path = path.substr(0, last + 1);
    return path.substr(path.rfind('/') + 1);
}

NameParts nameParts(std::string_view name) {
    name = lastPathComponent(name);
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot + 1 == name.size()) return {name, {}};
    return {name.substr(0, dot), name.substr(dot + 1)};
}

bool hasControlCharacters(std::string_view text) {
    unsigned char previous = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool endsC1 = previous == 0xC2 && byte >= 0x80 && byte <= 0x9F;
        if (byte < 0x20 || byte == 0x7F || endsC1) return true;
        previous = byte;
    }
    return false;
}

bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= longestFileName &&
           !name.contains('/') && !hasControlCharacters(name);
}

std::string displayText(std::string_view text) {
    const auto given = icu::UnicodeString::fromUTF8(text);
    icu::UnicodeString shown;
    for (std::int32_t i = 0; i < given.length(); i = given.moveIndex32(i, 1))
        shown.append(visible(given.char32At(i)));
    return utf8(shown);
}

}  // namespace bildkurier
