// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DateFormatter.h"
#include "FourThreads.h"
#include "InTimeZone.h"
#include "Instants.h"
#include "LocalTime.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ctime>
#include <iomanip>
#include <sstream>
#include <vector>

namespace bildkurier {
namespace {

using namespace std::chrono;

DateFormatter inBerlin(const std::string& pattern) {
    return DateFormatter::fromPattern(pattern, "en_US_POSIX", "Europe/Berlin");
}

struct DateCase {
    Date date;
    std::string text;
};

TEST(DateFormatter, KnowsTheLocalDayRoundMidnight) {
    const DateFormatter formatter = inBerlin("yyyy-MM-dd HH:mm:ss");
    const DateCase cases[] = {
        {utc(2024y / January / 9, 22h + 59min + 59s), "2024-01-09 23:59:59"},
        {utc(2024y / January / 9, 23h), "2024-01-10 00:00:00"},
        {utc(2024y / May / 8, 21h + 59min + 59s + 999ms), "2024-05-08 23:59:59"},
        {utc(2024y / May / 8, 22h), "2024-05-09 00:00:00"},
        {utc(2023y / December / 31, 23h), "2024-01-01 00:00:00"},
        {utc(2024y / February / 28, 23h), "2024-02-29 00:00:00"},
        {utc(1969y / December / 31, 22h + 59min + 59s + 999ms), "1969-12-31 23:59:59"},
    };
    for (const auto& [date, text] : cases) EXPECT_EQ(formatter.text(date), text);
}

TEST(DateFormatter, FollowsSummerTime) {
    const DateFormatter formatter = inBerlin("yyyy-MM-dd HH:mm:ss");
    const DateCase cases[] = {
        {utc(2024y / March / 30, 23h), "2024-03-31 00:00:00"},
        {utc(2024y / March / 31, 59min + 59s), "2024-03-31 01:59:59"},
        {utc(2024y / March / 31, 1h), "2024-03-31 03:00:00"},
        {utc(2024y / March / 31, 21h + 59min), "2024-03-31 23:59:00"},
        {utc(2024y / March / 31, 22h), "2024-04-01 00:00:00"},
        {utc(2024y / October / 26, 22h), "2024-10-27 00:00:00"},
        {utc(2024y / October / 27, 59min + 59s), "2024-10-27 02:59:59"},
        {utc(2024y / October / 27, 1h), "2024-10-27 02:00:00"},
        {utc(2024y / October / 27, 22h + 59min), "2024-10-27 23:59:00"},
        {utc(2024y / October / 27, 23h), "2024-10-28 00:00:00"},
    };
    for (const auto& [date, text] : cases) EXPECT_EQ(formatter.text(date), text);
}

TEST(DateFormatter, KnowsZonesFarFromGreenwich) {
    const Date noon = utc(2024y / May / 9, 12h);
    const auto day = [&](const std::string& zone) {
        return DateFormatter::fromPattern("yyyy-MM-dd HH:mm", "en_US_POSIX", zone).text(noon);
    };
    EXPECT_EQ(day("Pacific/Kiritimati"), "2024-05-10 02:00");
    EXPECT_EQ(day("Pacific/Pago_Pago"), "2024-05-09 01:00");
    EXPECT_EQ(day("Asia/Kathmandu"), "2024-05-09 17:45");
}

/// Zones that ICU knows otherwise or not at all: by their rules of late, or by how they are named.
constexpr const char* oddZones[] = {"America/Mexico_City",
                                    "Asia/Almaty",
                                    "Africa/Cairo",
                                    "America/Asuncion",
                                    "CET-1CEST,M3.5.0,M10.5.0/3",
                                    "/usr/share/zoneinfo/Europe/Berlin",
                                    "<+03>-3",
                                    "Asia/Kathmandu",
                                    "Europe/Berlin"};

TEST(DateFormatter, ShowsLocalTimesAsTheSystemDoes) {
    const auto formatter = DateFormatter::fromPattern("yyyy-MM-dd HH:mm:ss", "en_US_POSIX");
    for (const char* zone : oddZones) {
        const InTimeZone here(zone);
        for (Date date = utc(1969y / December / 31, 22h); date < utc(2037y / January / 1);
             date += 1237h + 30min + 1ms) {
            const std::time_t seconds =
                floor<std::chrono::seconds>(date).time_since_epoch().count();
            std::tm wallClock{};
            ::localtime_r(&seconds, &wallClock);
            char expected[32];
            std::strftime(expected, sizeof expected, "%Y-%m-%d %H:%M:%S", &wallClock);
            ASSERT_EQ(formatter.text(date), expected) << zone;
        }
    }
}

TEST(DateFormatter, KnowsTheDayThatAWallClockShowed) {
    const auto formatter = DateFormatter::fromPattern("yyyy-MM-dd HH:mm", "en_US_POSIX");
    for (const char* zone : oddZones) {
        const InTimeZone here(zone);
        for (const int hour : {0, 23}) {
            const auto date = localTime(
                {.tm_min = 30, .tm_hour = hour, .tm_mday = 1, .tm_mon = 5, .tm_year = 2024 - 1900});
            ASSERT_TRUE(date);
            EXPECT_EQ(formatter.text(*date), hour == 0 ? "2024-06-01 00:30" : "2024-06-01 23:30")
                << zone;
        }
    }
}

TEST(DateFormatter, HasTheShortDateStyleOfALocale) {
    const Date date = utc(2024y / May / 9, 12h);
    EXPECT_EQ(DateFormatter::shortDate("de_DE", "UTC").text(date), "09.05.24");
    EXPECT_EQ(DateFormatter::shortDate("en_US", "UTC").text(date), "5/9/24");
    EXPECT_EQ(DateFormatter::shortDate("fr_FR", "UTC").text(date), "09/05/2024");
    EXPECT_EQ(DateFormatter::shortDate("de_DE", "Pacific/Kiritimati").text(date), "10.05.24");
}

TEST(DateFormatter, ArrangesTheFieldsOfASkeletonAsALocaleDoes) {
    const Date date = utc(2024y / May / 9, 12h);
    const auto text = [&](const std::string& locale) {
        return DateFormatter::fromSkeleton("EEEEdMMMMyyyy", locale, "UTC").text(date);
    };
    EXPECT_EQ(text("de_DE"), "Donnerstag, 9. Mai 2024");
    EXPECT_EQ(text("en_US"), "Thursday, May 9, 2024");
    EXPECT_EQ(text("fr_FR"), "jeudi 9 mai 2024");
}

TEST(DateFormatter, KeepsAFixedPatternInAnyLanguage) {
    const Date date = utc(2024y / May / 9, 12h);
    EXPECT_EQ(DateFormatter::fromPattern("d. MMMM", "de_DE", "UTC").text(date), "9. Mai");
    EXPECT_EQ(inBerlin("yyyy-MM-dd").text(date), "2024-05-09");
}

TEST(DateFormatter, SurvivesDatesThatCannotBe) {
    const DateFormatter formatter = inBerlin("yyyy-MM-dd");
    EXPECT_EQ(formatter.text(utc(12024y / May / 9)), "12024-05-09");
    for (const Date date : {Date::min(), Date::max()}) {
        EXPECT_NE(formatter.text(date), "");
        EXPECT_EQ(formatter.text(date).find('/'), std::string::npos);
    }
}

TEST(DateFormatter, CanBeMoved) {
    DateFormatter formatter = inBerlin("yyyy");
    formatter = inBerlin("MM");
    const DateFormatter moved = std::move(formatter);
    EXPECT_EQ(moved.text(utc(2024y / May / 9, 12h)), "05");
}

TEST(DateFormatter, ServesSeveralThreadsAtOnce) {
    const DateFormatter formatter = inBerlin("yyyy-MM-dd HH:mm:ss");
    const auto texts = [&] {
        std::vector<std::string> result(2000);
        Date date = utc(2024y / January / 1);
        for (std::string& text : result) text = formatter.text(date += 5h);
        return result;
    };
    const auto expected = texts();
    for (const auto& result : inFourThreads(texts)) EXPECT_EQ(result, expected);
}

RC_GTEST_PROP(DateFormatter, AgreesWithTheCalendar, ()) {
    static const auto formatter = DateFormatter::fromPattern("yyyy-MM-dd", "en_US_POSIX", "UTC");
    const auto first = sys_days(1583y / January / 1);
    const auto last = sys_days(9999y / December / 31);
    const auto day = first + days(*rc::gen::inRange<days::rep>(0, (last - first).count() + 1));
    const auto time = milliseconds(*rc::gen::inRange(0, 86'400'000));
    const year_month_day date(day);
    std::ostringstream expected;
    expected << std::setfill('0') << std::setw(4) << int(date.year()) << '-' << std::setw(2)
             << unsigned(date.month()) << '-' << std::setw(2) << unsigned(date.day());
    RC_ASSERT(formatter.text(day + time) == expected.str());
}

}  // namespace
}  // namespace bildkurier
