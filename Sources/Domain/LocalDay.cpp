// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalDay.h"

#include "LocalTime.h"

#include <ctime>

namespace bildkurier {

using namespace std::chrono;

namespace {

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
    const auto midnight = localTime(day, "0000-00-00");
    if (!midnight) return std::nullopt;
    return startOfLocalDay(*midnight);
}

Date startOfLocalDay(Date date) { return firstMoment(localDay(date)); }

Date startOfNextLocalDay(Date date) { return firstMoment(localDay(date) + days(1)); }

}  // namespace bildkurier
