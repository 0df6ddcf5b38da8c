// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Utf8Text.h"

#include "IcuText.h"

#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace bildkurier {

bool isUtf8(std::string_view text) {
    // What is not UTF-8 comes back as replacement characters.
    return utf8(icu::UnicodeString::fromUTF8(text)) == text;
}

std::string trimmed(std::string_view text) {
    const auto all = icu::UnicodeString::fromUTF8(text);
    std::int32_t begin = 0;
    std::int32_t end = all.length();
    // All white space is in the first plane: one code unit each.
    while (begin < end && u_isUWhiteSpace(all[begin])) ++begin;
    while (end > begin && u_isUWhiteSpace(all[end - 1])) --end;
    return utf8(all.tempSubStringBetween(begin, end));
}

}  // namespace bildkurier
