// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalTime.h"

#include "ParsedNumber.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace bildkurier {

namespace {

using std::chrono::seconds;
using std::chrono::year_month_day;

year_month_day dayOf(const std::tm& time) {
    using namespace std::chrono;
    return {year(time.tm_year + 1900), month(static_cast<unsigned>(time.tm_mon + 1)),
            day(static_cast<unsigned>(time.tm_mday))};
}

bool exists(const std::tm& time) {
    const auto isBelow = [](int value, int limit) { return value >= 0 && value < limit; };
    return dayOf(time).ok() && isBelow(time.tm_hour, 24) && isBelow(time.tm_min, 60) &&
           isBelow(time.tm_sec, 60);
}

/// As if the clock were in UTC.
std::chrono::sys_seconds shownBy(const std::tm& clock) {
    using namespace std::chrono;
    return sys_days(dayOf(clock)) + hours(clock.tm_hour) + minutes(clock.tm_min) +
           seconds(clock.tm_sec);
}

bool hasForm(std::string_view text, std::string_view form) {
    return std::ranges::equal(text, form, [](char c, char wanted) {
        return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
    });
}

}  // namespace

std::optional<Date> localTime(const std::tm& wallClock) {
    if (!exists(wallClock)) return std::nullopt;
    constexpr int unknown = -1;
    std::tm time = wallClock;
    time.tm_isdst = unknown;
    time.tm_wday = unknown;  // set by mktime, whose -1 is also a date
    const std::time_t moment = std::mktime(&time);
    if (time.tm_wday == unknown) return std::nullopt;
    // Of a time that was skipped, mktime makes one before or after the gap, as it likes.
    const seconds skipped = std::max(shownBy(wallClock) - shownBy(time), seconds::zero());
    return Date(seconds(moment) + skipped);
}

std::optional<Date> localTime(std::string_view text, std::string_view form) {
    if (!hasForm(text, form)) return std::nullopt;
    const auto field = [text](std::size_t at, std::size_t length) {
        if (at >= text.size()) return 0;
        return parsedNumber<int>(text.substr(at, length)).value_or(0);
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
