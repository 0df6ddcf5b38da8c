// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileName.h"

#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>

namespace bildkurier {
namespace {

constexpr std::size_t longestFileName = 255;  // bytes, on every file system in use

constexpr bool isC0(char16_t c) { return c < 0x20; }
constexpr bool isDelete(char16_t c) { return c == 0x7F; }
constexpr bool isC1(char16_t c) { return c >= 0x80 && c <= 0x9F; }

bool hasControlCharacters(std::string_view name) {
    unsigned char previous = 0;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool endsC1 = previous == 0xC2 && isC1(byte);
        if (isC0(byte) || isDelete(byte) || endsC1) return true;
        previous = byte;
    }
    return false;
}

constexpr char16_t visible(char16_t c) {
    if (isC0(c)) return static_cast<char16_t>(u'\u2400' + c);
    if (isDelete(c)) return u'\u2421';
    if (isC1(c)) return u'\uFFFD';
    return c;
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

bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= longestFileName &&
           !name.contains('/') && !hasControlCharacters(name);
}

std::string displayText(std::string_view text) {
    auto shown = icu::UnicodeString::fromUTF8(text);
    for (std::int32_t i = 0; i < shown.length(); ++i) shown.setCharAt(i, visible(shown.charAt(i)));
    std::string result;
    return shown.toUTF8String(result);
}

}  // namespace bildkurier
