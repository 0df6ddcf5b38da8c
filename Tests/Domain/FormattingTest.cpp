// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "Instants.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unicode/errorcode.h>
#include <unicode/locid.h>

#include <cmath>
#include <limits>

namespace bildkurier {
namespace {

using namespace std::chrono;

constexpr auto mostBytes = std::numeric_limits<std::int64_t>::max();

TEST(FormatBytes, WritesSizesTheUsersWay) {
    EXPECT_EQ(formatBytes(1), "1 Byte");
    EXPECT_EQ(formatBytes(14'200'000'000), "14,2 GB");
    EXPECT_EQ(formatBytes(mostBytes), "9,22 EB");
}

TEST(FormatBytes, WritesZeroKilobytesForNothing) {
    EXPECT_EQ(formatBytes(0), "0 KB");
    EXPECT_EQ(formatBytes(-5), "0 KB");
    EXPECT_EQ(formatBytes(std::numeric_limits<std::int64_t>::min()), "0 KB");
}

TEST(FormatCount, WritesNumbersTheUsersWay) {
    EXPECT_EQ(formatCount(0), "0");
    EXPECT_EQ(formatCount(999), "999");
    EXPECT_EQ(formatCount(1'284), "1.284");
    EXPECT_EQ(formatCount(100'000), "100.000");
    EXPECT_EQ(formatCount(mostBytes), "9.223.372.036.854.775.807");
}

TEST(FormatSpeed, WritesWholeBytesPerSecond) {
    EXPECT_EQ(formatSpeed(2'500'000), "2,5 MB/s");
    EXPECT_EQ(formatSpeed(38'500'000), "38,5 MB/s");
    EXPECT_EQ(formatSpeed(1), "1 Byte/s");
    EXPECT_EQ(formatSpeed(1.999), "1 Byte/s");
    EXPECT_EQ(formatSpeed(999.999), "999 Byte/s");
    EXPECT_EQ(formatSpeed(999'499.99), "999 KB/s");
}

TEST(FormatSpeed, WritesZeroMegabytesForNoTransfer) {
    using Double = std::numeric_limits<double>;
    for (const double speed : {0.0, -0.0, 0.5, std::nextafter(1.0, 0.0), -1.0, -1e300,
                               Double::infinity(), -Double::infinity(), Double::quiet_NaN()}) {
        EXPECT_EQ(formatSpeed(speed), "0 MB/s") << speed;
    }
}

TEST(FormatSpeed, StopsAtTheGreatestCount) {
    for (const double speed :
         {0x1p63, std::nextafter(0x1p63, 1e300), 1e30, std::numeric_limits<double>::max()}) {
        EXPECT_EQ(formatSpeed(speed), formatBytes(mostBytes) + "/s");
    }
    EXPECT_EQ(formatSpeed(std::nextafter(0x1p63, 0)), "9,22 EB/s");
}

RC_GTEST_PROP(FormatSpeed, IsTheSizeOfOneSecond, ()) {
    const auto bytes = *rc::gen::inRange<std::int64_t>(1, std::int64_t{1} << 40);
    const auto fraction = *rc::gen::element(0.0, 0.25, 0.5, 0.75);
    RC_ASSERT(formatSpeed(static_cast<double>(bytes) + fraction) == formatBytes(bytes) + "/s");
}

TEST(DayFormatter, NamesTheLocalDay) {
    EXPECT_EQ(dayFormatter().text(utc(2024y / May / 8, 21h + 59min)), "2024-05-08");
    EXPECT_EQ(dayFormatter().text(utc(2024y / May / 8, 22h)), "2024-05-09");
    EXPECT_EQ(dayFormatter().text(utc(987y / May / 9, 12h)).substr(0, 5), "0987-");
}

TEST(DisplayDay, IsShortInTheUsersLanguage) {
    EXPECT_EQ(displayDay().text(utc(2024y / May / 9, 12h)), "09.05.24");
}

TEST(DisplayDayLong, HasWeekdayAndMonthNameInTheUsersLanguage) {
    EXPECT_EQ(displayDayLong().text(utc(2024y / May / 9, 12h)), "Donnerstag, 9. Mai 2024");
}

TEST(LogTime, IsTheLocalTimeOfDay) {
    EXPECT_EQ(logTime().text(utc(2024y / May / 9, 7h + 5min + 3s)), "09:05:03");
    EXPECT_EQ(logTime().text(utc(2024y / May / 9, 22h)), "00:00:00");
    EXPECT_EQ(logTime().text(utc(2024y / December / 9, 22h)), "23:00:00");
}

TEST(SharedFormatters, AreMadeOnce) {
    EXPECT_EQ(&dayFormatter(), &dayFormatter());
    EXPECT_EQ(&displayDay(), &displayDay());
    EXPECT_EQ(&displayDayLong(), &displayDayLong());
    EXPECT_EQ(&logTime(), &logTime());

    const icu::Locale before = icu::Locale::getDefault();
    const std::string size = formatBytes(38'500'000);
    icu::ErrorCode status;
    icu::Locale::setDefault(icu::Locale::getUS(), status);
    EXPECT_EQ(formatBytes(38'500'000), size);
    icu::Locale::setDefault(before, status);
    EXPECT_TRUE(status.isSuccess());
}

}  // namespace
}  // namespace bildkurier
