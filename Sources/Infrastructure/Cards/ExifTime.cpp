// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifTime.h"

#include "LocalTime.h"

#include <algorithm>
#include <cstddef>

namespace bildkurier {

namespace {

bool hasForm(std::string_view text, std::string_view form) {
    return std::ranges::equal(text, form, [](char c, char wanted) {
        return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
    });
}

int number(std::string_view digits) {
    int value = 0;
    for (const char digit : digits) value = value * 10 + (digit - '0');
    return value;
}

}  // namespace

std::optional<Date> exifTime(std::string_view text) {
    constexpr std::string_view padding(" \0", 2);
    text = text.substr(0, text.find_last_not_of(padding) + 1);
    if (!hasForm(text, "0000:00:00 00:00:00")) return std::nullopt;
    const auto field = [text](std::size_t at, std::size_t length) {
        return number(text.substr(at, length));
    };
    std::tm wallClock{};
    wallClock.tm_year = field(0, 4) - 1900;
    wallClock.tm_mon = field(5, 2) - 1;
    wallClock.tm_mday = field(8, 2);
    wallClock.tm_hour = field(11, 2);
    wallClock.tm_min = field(14, 2);
    wallClock.tm_sec = field(17, 2);
    return localTime(wallClock);
}

}  // namespace bildkurier
