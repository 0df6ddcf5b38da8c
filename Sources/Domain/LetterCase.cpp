// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LetterCase.h"

#include "IcuStatus.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringpiece.h>

#include <algorithm>
#include <cstdint>

namespace bildkurier {
namespace {

// Most names are ASCII, and a scan maps hundreds of thousands of them: no ICU for those.

constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char asciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string mapAscii(std::string_view text, char (*mapping)(char)) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), mapping);
    return result;
}

using Mapping = void (*)(const char*, std::uint32_t, icu::StringPiece, icu::ByteSink&, icu::Edits*,
                         UErrorCode&);

std::string mapUnicode(std::string_view text, Mapping mapping) {
    constexpr const char* rootLocale = "";
    std::string result;
    icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
    IcuStatus status;
    mapping(rootLocale, 0, text, sink, nullptr, status);
    status.assertSuccess();
    return result;
}

}  // namespace

std::string lowerCased(std::string_view text) {
    return isAscii(text) ? mapAscii(text, asciiLower) : mapUnicode(text, icu::CaseMap::utf8ToLower);
}

std::string upperCased(std::string_view text) {
    return isAscii(text) ? mapAscii(text, asciiUpper) : mapUnicode(text, icu::CaseMap::utf8ToUpper);
}

}  // namespace bildkurier
