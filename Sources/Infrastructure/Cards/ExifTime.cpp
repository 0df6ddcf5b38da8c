// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifTime.h"

#include "LocalTime.h"

namespace bildkurier {

std::optional<Date> exifTime(std::string_view text) {
    constexpr std::string_view padding(" \0", 2);
    text = text.substr(0, text.find_last_not_of(padding) + 1);
    return localTime(text, "0000:00:00 00:00:00");
}

}  // namespace bildkurier
