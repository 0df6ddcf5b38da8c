// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ByteFormatter.h"
#include "FourThreads.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <sstream>
#include <vector>

namespace bildkurier {
namespace {

constexpr auto utmost = std::numeric_limits<std::int64_t>::max();

struct Case {
    std::int64_t bytes;
    std::string text;
};

TEST(ByteFormatter, WritesGermanSizes) {
    const ByteFormatter formatter("de_DE");
    const Case cases[] = {
        {1, "1 Byte"},
        {2, "2 Byte"},
        {999, "999 Byte"},
        {1'000, "1 KB"},
        {1'499, "1 KB"},
        {25'431, "25 KB"},
        {1'000'000, "1 MB"},
        {2'500'000, "2,5 MB"},
        {38'500'000, "38,5 MB"},
        {38'540'000, "38,5 MB"},
        {209'715'200, "209,7 MB"},
        {1'000'000'000, "1 GB"},
        {14'200'000'000, "14,2 GB"},
        {14'234'000'000, "14,23 GB"},
        {2'000'000'000'000, "2 TB"},
        {2'340'000'000'000, "2,34 TB"},
        {5'670'000'000'000'000, "5,67 PB"},
        {1'000'000'000'000'000'000, "1 EB"},
        {utmost, "9,22 EB"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.text(bytes), text) << bytes;
}

TEST(ByteFormatter, GoesOnToTheNextUnitRatherThanTo1000) {
    const ByteFormatter formatter("de_DE");
    const Case cases[] = {
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {999'999, "1 MB"},
        {999'949'999, "999,9 MB"},
        {999'950'000, "1 GB"},
        {999'994'999'999, "999,99 GB"},
        {999'995'000'000, "1 TB"},
        {999'994'999'999'999, "999,99 TB"},
        {999'995'000'000'000, "1 PB"},
        {999'994'999'999'999'999, "999,99 PB"},
        {999'995'000'000'000'000, "1 EB"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.text(bytes), text) << bytes;
}

TEST(ByteFormatter, RoundsHalvesToTheEvenDigit) {
    const ByteFormatter formatter("de_DE");
    const Case cases[] = {
        {1'500, "2 KB"},       {2'500, "2 KB"},         {2'501, "3 KB"},
        {1'050'000, "1 MB"},   {1'150'000, "1,2 MB"},   {1'150'001, "1,2 MB"},
        {1'250'000, "1,2 MB"}, {1'005'000'000, "1 GB"}, {1'015'000'000, "1,02 GB"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(formatter.text(bytes), text) << bytes;
}

TEST(ByteFormatter, FollowsTheLocale) {
    const struct {
        std::string locale;
        std::int64_t bytes;
        std::string text;
    } cases[] = {
        {"en_US", 1, "1 byte"},
        {"en_US", 999, "999 bytes"},
        {"en_US", 1'000, "1 KB"},
        {"en_US", 38'500'000, "38.5 MB"},
        {"en_US", 14'200'000'000, "14.2 GB"},
        {"en_US", utmost, "9.22 EB"},
        {"en_US_POSIX", 14'230'000'000, "14.23 GB"},
        {"fr_FR", 1, "1 octet"},
        {"fr_FR", 999, "999 octets"},
        {"fr_FR", 1'000, "1 Ko"},
        {"fr_FR", 38'500'000, "38,5 Mo"},
        {"fr_FR", utmost, "9,22 Eo"},
        {"ru_RU", 1'000, "1 КБ"},
        {"de_CH", 14'200'000'000, "14.2 GB"},
        {"ko_KR", 1'000, "1 KB"},
        {"sw", 14'200'000'000, "GB 14.2"},
        {"ar_EG", 14'200'000'000, "١٤٫٢ غ.ب"},
        {"no such locale", 14'200'000'000, "14.2 GB"},
    };
    for (const auto& [locale, bytes, text] : cases) {
        EXPECT_EQ(ByteFormatter(locale).text(bytes), text) << locale;
    }
}

TEST(ByteFormatter, HasZerosInTheUnitsOfTheLocale) {
    const struct {
        std::string locale;
        std::string kilobytes;
        std::string megabytes;
    } cases[] = {
        {"de_DE", "0 KB", "0 MB"},
        {"en_US", "0 KB", "0 MB"},
        {"fr_FR", "0 Ko", "0 Mo"},
    };
    for (const auto& [locale, kilobytes, megabytes] : cases) {
        const ByteFormatter formatter(locale);
        EXPECT_EQ(formatter.zeroKilobytes(), kilobytes);
        EXPECT_EQ(formatter.zeroMegabytes(), megabytes);
    }
}

TEST(ByteFormatter, CanBeMoved) {
    ByteFormatter formatter("en_US");
    formatter = ByteFormatter("fr_FR");
    const ByteFormatter moved = std::move(formatter);
    EXPECT_EQ(moved.text(1'000), "1 Ko");
}

TEST(ByteFormatter, ServesSeveralThreadsAtOnce) {
    const ByteFormatter formatter("de_DE");
    const auto texts = [&] {
        std::vector<std::string> result;
        for (std::int64_t bytes = 1; bytes < utmost / 3; bytes += bytes / 2 + 1) {
            result.push_back(formatter.text(bytes));
        }
        return result;
    };
    const auto expected = texts();
    for (const auto& result : inFourThreads(texts)) EXPECT_EQ(result, expected);
}

RC_GTEST_PROP(ByteFormatter, IsNeverFartherOffThanHalfADigit, ()) {
    static const ByteFormatter formatter("en_US");
    static const std::map<std::string, std::pair<long double, int>> units = {
        {"byte", {1.0L, 0}}, {"bytes", {1.0L, 0}}, {"KB", {1e3L, 0}},  {"MB", {1e6L, 1}},
        {"GB", {1e9L, 2}},   {"TB", {1e12L, 2}},   {"PB", {1e15L, 2}}, {"EB", {1e18L, 2}},
    };
    const auto magnitude = *rc::gen::inRange(0, 63);
    const auto bytes = *rc::gen::inRange<std::int64_t>(1, utmost >> magnitude);
    std::string number;
    std::string unit;
    std::istringstream(formatter.text(bytes)) >> number >> unit;

    const auto& [size, decimals] = units.at(unit);
    const long double value = std::stold(number);
    const long double digit = size * std::pow(10.0L, -decimals);
    RC_ASSERT(value >= 1);
    RC_ASSERT(value < 1000);
    RC_ASSERT(std::abs(value * size - static_cast<long double>(bytes)) <= digit * 0.500001L);
    if (number.contains('.')) {
        RC_ASSERT(!number.ends_with('0'));
        RC_ASSERT(number.size() - number.find('.') - 1 <= static_cast<std::size_t>(decimals));
    }
}

}  // namespace
}  // namespace bildkurier
