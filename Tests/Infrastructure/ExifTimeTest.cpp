// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifTime.h"
#include "InTimeZone.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::year;

TEST(ExifTime, TakesTheCamerasClockForLocalTime) {
    const InTimeZone berlin("Europe/Berlin");
    EXPECT_EQ(exifTime("2024:07:15 23:30:00"), sys_days(year(2024) / 7 / 15) + 21h + 30min);
    EXPECT_EQ(exifTime("2024:01:15 00:00:59"), sys_days(year(2024) / 1 / 14) + 23h + 59s);
    EXPECT_EQ(exifTime("1970:01:01 00:59:59"), Date(-1s));
    EXPECT_EQ(exifTime("2024:02:29 12:00:00"), sys_days(year(2024) / 2 / 29) + 11h);
}

TEST(ExifTime, AllowsForPadding) {
    const InTimeZone utc("UTC");
    const Date date = sys_days(year(2024) / 7 / 15) + 1s;
    EXPECT_EQ(exifTime(std::string_view("2024:07:15 00:00:01\0", 20)), date);
    EXPECT_EQ(exifTime("2024:07:15 00:00:01  "), date);
}

TEST(ExifTime, IsAbsentForAnythingElse) {
    for (const char* text : {"",
                             " ",
                             "0000:00:00 00:00:00",
                             "    :  :     :  :  ",
                             "2024-07-15 23:30:00",
                             "2024:07:15T23:30:00",
                             "2024:07:15 23:30",
                             "2024:07:15",
                             "2024:7:15 23:30:00",
                             "2024:13:15 23:30:00",
                             "2024:00:15 23:30:00",
                             "2024:07:00 23:30:00",
                             "2024:02:30 23:30:00",
                             "2023:02:29 23:30:00",
                             "2024:07:15 24:00:00",
                             "2024:07:15 23:60:00",
                             "2024:07:15 23:30:60",
                             "2024:07:15 23:30:00Z",
                             "2024:07:15 23:30:00+02:00",
                             " 2024:07:15 23:30:00",
                             "2024:07:15 -3:30:00",
                             "2024:07:15 23:30:0x",
                             "\xFF\xFF\xFF\xFF:07:15 23:30:00"})
        EXPECT_EQ(exifTime(text), std::nullopt) << text;
}

TEST(ExifTime, TakesAnyTextWithoutHarm) {
    EXPECT_TRUE(rc::check([](const std::string& text) {
        const auto date = exifTime(text);
        if (text.size() < 19) RC_ASSERT(!date);
    }));
}

}  // namespace
}  // namespace bildkurier
