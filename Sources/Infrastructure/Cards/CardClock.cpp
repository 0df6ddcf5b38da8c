// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardClock.h"

#include "LocalTime.h"
#include "ParsedNumber.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <ranges>

namespace bildkurier {

namespace {

using std::chrono::minutes;

std::optional<minutes> offsetIn(std::string_view options) {
    constexpr std::string_view key = "time_offset=";
    std::optional<minutes> offset;
    for (const auto part : options | std::views::split(',')) {
        const std::string_view option(part.begin(), part.end());
        if (option == "tz=UTC") offset = minutes::zero();
        if (!option.starts_with(key)) continue;
        if (const auto value = parsedNumber<int>(option.substr(key.size())))
            offset = minutes(*value);
    }
    return offset;
}

/// Whether the year has at most four digits.
bool isInCalendar(const std::timespec& stamp) {
    using namespace std::chrono;
    constexpr auto first = sys_seconds(sys_days(January / 1 / 1)).time_since_epoch();
    constexpr auto end = sys_seconds(sys_days(January / 1 / 10000)).time_since_epoch();
    return stamp.tv_sec >= first.count() && stamp.tv_sec < end.count();
}

Date exactly(const std::timespec& stamp) {
    using namespace std::chrono;
    return Date(seconds(stamp.tv_sec) + floor<milliseconds>(nanoseconds(stamp.tv_nsec)));
}

}  // namespace

CardClock::CardClock(std::string_view type, std::string_view options, minutes minutesWest)
    : isWallClock_(type == "vfat" || type == "msdos"),
      east_(offsetIn(options).value_or(-minutesWest)) {}

std::optional<Date> CardClock::date(const std::timespec& stamp) const {
    if (!isInCalendar(stamp)) return std::nullopt;
    if (!isWallClock_) return exactly(stamp);
    const std::time_t seconds = stamp.tv_sec + std::chrono::seconds(east_).count();
    std::tm wallClock{};
    if (::gmtime_r(&seconds, &wallClock) == nullptr) return std::nullopt;
    return localTime(wallClock);
}

minutes kernelMinutesWest() {
    // gettimeofday of the C library always answers zero here.
    timeval now{};
    struct timezone zone{};
    if (::syscall(SYS_gettimeofday, &now, &zone) != 0) return minutes::zero();
    return minutes(zone.tz_minuteswest);
}

}  // namespace bildkurier
