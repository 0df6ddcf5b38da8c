// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InTimeZone.h"
#include "Instants.h"
#include "LocalDay.h"
#include "LocalTime.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace bildkurier
