// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InTimeZone.h"
#include "Instants.h"
#include "LocalDay.h"
#include "LocalTime.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace bildkurier {
namespace {

using namespace std::chrono;

TEST(StartOfLocalDay, IsMidnightHere) {
    EXPECT_EQ(startOfLocalDay("2024-01-10"), utc(2024y / January / 9, 23h));
    EXPECT_EQ(startOfLocalDay("2024-05-09"), utc(2024y / May / 8, 22h));
    EXPECT_EQ(startOfLocalDay("1970-01-01"), utc(1969y / December / 31, 23h));
}

TEST(StartOfLocalDay, IsTheFirstMomentOfADayWithoutMidnight) {
    const struct {
        const char* zone;
        const char* day;
        Date start;
    } cases[] = {
        {"<+02>-2<+03>,M4.5.5/0,M10.5.4/24", "2024-04-26", utc(2024y / April / 25, 22h)},
        {"<-04>4<-03>,M10.1.0/0,M3.4.0/0", "2024-10-06", utc(2024y / October / 6, 4h)},
        {"America/Sao_Paulo", "2018-11-04", utc(2018y / November / 4, 3h)},
    };
    for (const auto& [zone, day, start] : cases) {
        const InTimeZone here(zone);
        EXPECT_EQ(startOfLocalDay(day), start) << zone;
    }
}

TEST(StartOfLocalDay, IsAbsentForWhatIsNoDay) {
    for (const char* day : {"", "heute", "2024-5-9", "2024-13-01", "2024-00-01", "2024-02-30",
                            "2023-02-29", "2024-01-00", "2024:01:01", "2024-01-011", "+024-01-01",
                            "-024-01-01", "2024-01-1 ", " 2024-01-01"}) {
        EXPECT_EQ(startOfLocalDay(day), std::nullopt) << day;
    }
}

TEST(LocalTime, KeepsTheDayOfATimeThatWasSkipped) {
    const char* const form = "0000:00:00 00:00:00";
    const InTimeZone saoPaulo("America/Sao_Paulo");
    EXPECT_EQ(localTime("2018:11:04 00:00:00", form), utc(2018y / November / 4, 3h));
    EXPECT_EQ(localTime("2018:11:04 00:30:00", form), utc(2018y / November / 4, 3h + 30min));
    EXPECT_EQ(localTime("2018:11:03 23:59:59", form), utc(2018y / November / 4, 3h - 1s));
    EXPECT_EQ(localTime("2018:11:04 01:30:00", form), utc(2018y / November / 4, 3h + 30min));
}

TEST(LocalDay, BeginsWhenTheClockFirstShowsIt) {
    const struct {
        const char* zone;
        const char* why;
        Date moment;
        Date start;
        Date next;
    } cases[] = {
        {"Europe/Berlin", "an ordinary day", utc(2024y / May / 9, 10h), utc(2024y / May / 8, 22h),
         utc(2024y / May / 9, 22h)},
        {"Europe/Berlin", "its first moment", utc(2024y / May / 8, 22h), utc(2024y / May / 8, 22h),
         utc(2024y / May / 9, 22h)},
        {"Europe/Berlin", "its last moment", utc(2024y / May / 9, 22h - 1ms),
         utc(2024y / May / 8, 22h), utc(2024y / May / 9, 22h)},
        {"Europe/Berlin", "23 hours", utc(2024y / March / 31, 12h), utc(2024y / March / 30, 23h),
         utc(2024y / March / 31, 22h)},
        {"Europe/Berlin", "25 hours", utc(2024y / October / 27, 22h),
         utc(2024y / October / 26, 22h), utc(2024y / October / 27, 23h)},
        {"Europe/Berlin", "before 1970", utc(1969y / December / 31, 22h + 59min + 59s + 999ms),
         utc(1969y / December / 30, 23h), utc(1969y / December / 31, 23h)},
        {"Europe/Berlin", "long ago", utc(1y / January / 1, 12h),
         utc(0y / December / 31, 23h + 6min + 32s), utc(1y / January / 1, 23h + 6min + 32s)},
        {"Europe/Berlin", "far away", utc(9999y / December / 31, 12h),
         utc(9999y / December / 30, 23h), utc(9999y / December / 31, 23h)},
        {"America/Sao_Paulo", "without midnight", utc(2018y / November / 4, 15h),
         utc(2018y / November / 4, 3h), utc(2018y / November / 5, 2h)},
        {"America/Sao_Paulo", "before a day without midnight", utc(2018y / November / 3, 15h),
         utc(2018y / November / 3, 3h), utc(2018y / November / 4, 3h)},
        {"America/Sao_Paulo", "its last hour twice", utc(2018y / February / 18, 2h + 30min),
         utc(2018y / February / 17, 2h), utc(2018y / February / 18, 3h)},
        {"America/Havana", "midnight twice, after the first", utc(2024y / November / 3, 4h + 30min),
         utc(2024y / November / 3, 4h), utc(2024y / November / 4, 5h)},
        {"America/Havana", "midnight twice, after the second",
         utc(2024y / November / 3, 5h + 30min), utc(2024y / November / 3, 4h),
         utc(2024y / November / 4, 5h)},
        {"Atlantic/Azores", "midnight twice", utc(2024y / October / 27, 30min),
         utc(2024y / October / 27), utc(2024y / October / 28, 1h)},
        {"Pacific/Apia", "before a day that was left out", utc(2011y / December / 30, 9h),
         utc(2011y / December / 29, 10h), utc(2011y / December / 30, 10h)},
        {"Pacific/Kiritimati", "far east", utc(2024y / May / 9, 10h), utc(2024y / May / 9, 10h),
         utc(2024y / May / 10, 10h)},
        {"Etc/GMT+12", "far west", utc(2024y / May / 9, 11h), utc(2024y / May / 8, 12h),
         utc(2024y / May / 9, 12h)},
    };
    for (const auto& [zone, why, moment, start, next] : cases) {
        const InTimeZone local(zone);
        EXPECT_EQ(startOfLocalDay(moment), start) << zone << ": " << why;
        EXPECT_EQ(startOfNextLocalDay(moment), next) << zone << ": " << why;
    }
}

TEST(LocalDay, IsFoundByItsText) {
    const struct {
        const char* zone;
        const char* day;
        Date start;
    } cases[] = {
        {"UTC", "2024-05-09", utc(2024y / May / 9)},
        {"Europe/Berlin", "2024-05-09", utc(2024y / May / 8, 22h)},
        {"Europe/Berlin", "2024-02-29", utc(2024y / February / 28, 23h)},
        {"America/Sao_Paulo", "2018-11-04", utc(2018y / November / 4, 3h)},
        {"America/Havana", "2024-11-03", utc(2024y / November / 3, 4h)},
    };
    for (const auto& [zone, day, start] : cases) {
        const InTimeZone local(zone);
        EXPECT_EQ(startOfLocalDay(day), start) << zone << " " << day;
    }
}

RC_GTEST_PROP(LocalDay, HoldsItsMomentsAndNoOthers, ()) {
    const InTimeZone local(*rc::gen::element<const char*>(
        "Europe/Berlin", "America/Sao_Paulo", "America/Havana", "Atlantic/Azores", "Asia/Beirut",
        "Australia/Lord_Howe", "Asia/Kathmandu"));
    const Date moment(seconds(*rc::gen::inRange(0, 2'000'000'000)));
    const Date start = startOfLocalDay(moment);
    const Date next = startOfNextLocalDay(moment);
    RC_ASSERT(start <= moment);
    RC_ASSERT(moment < next);
    RC_ASSERT(startOfLocalDay(start) == start);
    RC_ASSERT(startOfLocalDay(next - 1ms) == start);
    RC_ASSERT(startOfLocalDay(next) == next);
}

}  // namespace
}  // namespace bildkurier
