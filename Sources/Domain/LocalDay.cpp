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

/// Midnight at the beginning of a day; `day` may lie past the month's end.
Date midnight(int year, int month, int day) {
    std::tm moment{};
    moment.tm_year = year - 1900;
    moment.tm_mon = month - 1;
    moment.tm_mday = day;
    moment.tm_isdst = -1;
    std::time_t seconds = std::mktime(&moment);
    // A midnight that does not exist may be taken for the last hour of the day before.
    constexpr std::time_t hour = 60 * 60;
    if (moment.tm_hour > 12) seconds += hour;
    return Date(std::chrono::seconds(seconds));
}

std::tm localTime(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
    const std::time_t time = seconds;
    std::tm local{};
    localtime_r(&time, &local);
    return local;
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
    return midnight(*year, *month, *dayOfMonth);
}

Date startOfLocalDay(Date date) {
    const std::tm local = localTime(date);
    return midnight(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

Date startOfNextLocalDay(Date date) {
    const std::tm local = localTime(date);
    return midnight(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday + 1);
}

}  // namespace bildkurier
