// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalTime.h"

#include <chrono>

namespace bildkurier {

namespace {

bool exists(const std::tm& time) {
    using namespace std::chrono;
    const year_month_day day(year(time.tm_year + 1900), month(static_cast<unsigned>(time.tm_mon + 1)),
                             std::chrono::day(static_cast<unsigned>(time.tm_mday)));
    const auto isBelow = [](int value, int limit) { return value >= 0 && value < limit; };
    return day.ok() && isBelow(time.tm_hour, 24) && isBelow(time.tm_min, 60) &&
           isBelow(time.tm_sec, 60);
}

}  // namespace

std::optional<Date> localTime(const std::tm& wallClock) {
    if (!exists(wallClock)) return std::nullopt;
    constexpr int unknown = -1;
    std::tm time = wallClock;
    time.tm_isdst = unknown;
    time.tm_wday = unknown;  // set by mktime, whose -1 is also a date
    const std::time_t seconds = std::mktime(&time);
    if (time.tm_wday == unknown) return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

}  // namespace bildkurier
