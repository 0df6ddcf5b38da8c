// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LetterCase.h"

#include "IcuStatus.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringpiece.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>

namespace bildkurier {
namespace {

constexpr const char* rootLocale = "";
constexpr UChar32 replacementCharacter = 0xFFFD;  // what ICU reads where bytes are not valid

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

using Utf8Mapping = void (*)(const char*, std::uint32_t, icu::StringPiece, icu::ByteSink&,
                             icu::Edits*, UErrorCode&);

/// Maps the stretches that are valid UTF-8 and copies the bytes between them, which ICU would
/// replace.
std::string mapUnicode(icu::StringPiece text, Utf8Mapping mapping) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    IcuStatus status;
    const auto map = [&](icu::StringPiece stretch) {
        mapping(rootLocale, 0, stretch, sink, nullptr, status);
    };
    const icu::LocalUTextPointer characters(
        utext_openUTF8(nullptr, text.data(), text.length(), status));
    std::int32_t stretch = 0;
    for (std::int32_t at = 0, next = 0; at < text.length(); at = next) {
        const UChar32 character = utext_next32(characters.getAlias());
        next = static_cast<std::int32_t>(utext_getNativeIndex(characters.getAlias()));
        if (character != replacementCharacter) continue;
        map(text.substr(stretch, at - stretch));
        sink.Append(text.data() + at, next - at);
        stretch = next;
    }
    map(text.substr(stretch));
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
