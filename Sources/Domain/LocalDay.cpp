// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalDay.h"

#include <charconv>
#include <ctime>

namespace bildkurier {

namespace {

/// The whole of `text` as a number of digits only.
std::optional<int> digits(std::string_view text) {
    int value = 0;
    if (text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

std::optional<Date> startOfLocalDay(std::string_view day) {
    if (day.size() != 10 || day[4] != '-' || day[7] != '-') return std::nullopt;
    const auto year = digits(day.substr(0, 4));
    const auto month = digits(day.substr(5, 2));
    const auto dayOfMonth = digits(day.substr(8, 2));
    if (!year || !month || !dayOfMonth) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*dayOfMonth))};
    if (!date.ok()) return std::nullopt;
    std::tm midnight{};
    midnight.tm_year = *year - 1900;
    midnight.tm_mon = *month - 1;
    midnight.tm_mday = *dayOfMonth;
    midnight.tm_isdst = -1;
    return Date(std::chrono::seconds(std::mktime(&midnight)));
}

}  // namespace bildkurier
