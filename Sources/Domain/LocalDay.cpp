// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalDay.h"

#include <charconv>
#include <ctime>

namespace bildkurier {

using namespace std::chrono;

namespace {

/// The whole of `text` as a number of digits only.
std::optional<int> digits(std::string_view text) {
    int value = 0;
    if (text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The day that clocks in the local time zone show.
local_days localDay(sys_seconds moment) {
    const std::time_t time = moment.time_since_epoch().count();
    std::tm local{};
    localtime_r(&time, &local);
    return floor<days>(local_seconds(moment.time_since_epoch() + seconds(local.tm_gmtoff)));
}

local_days localDay(Date date) { return localDay(floor<seconds>(date)); }

/// The first moment at which clocks show `day`, or a later one if it is left out.
Date firstMoment(local_days day) {
    constexpr hours furthest{26};  // more than any clock is from Greenwich
    sys_seconds before = sys_days(day.time_since_epoch()) - furthest;
    sys_seconds found = sys_days(day.time_since_epoch()) + furthest;
    while (found - before > seconds(1)) {
        const sys_seconds middle = before + (found - before) / 2;
        (localDay(middle) < day ? before : found) = middle;
    }
    return found;
}

}  // namespace

std::optional<Date> startOfLocalDay(std::string_view day) {
    if (day.size() != 10 || day[4] != '-' || day[7] != '-') return std::nullopt;
    const auto year = digits(day.substr(0, 4));
    const auto month = digits(day.substr(5, 2));
    const auto dayOfMonth = digits(day.substr(8, 2));
    if (!year || !month || !dayOfMonth) return std::nullopt;
    const year_month_day date{std::chrono::year(*year),
                              std::chrono::month(static_cast<unsigned>(*month)),
                              std::chrono::day(static_cast<unsigned>(*dayOfMonth))};
    if (!date.ok()) return std::nullopt;
    return firstMoment(local_days(date));
}

Date startOfLocalDay(Date date) { return firstMoment(localDay(date)); }

Date startOfNextLocalDay(Date date) { return firstMoment(localDay(date) + days(1)); }

}  // namespace bildkurier
