// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ByteSum.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(ByteSum, StopsAtTheEndsOfTheRange) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    const struct {
        std::int64_t a;
        std::int64_t b;
        std::int64_t sum;
    } cases[] = {
        {0, 0, 0},          {2, 3, 5},
        {-2, 3, 1},         {most - 1, 1, most},
        {most, 0, most},    {most, 1, most},
        {most, most, most}, {least + 1, -1, least},
        {least, -1, least}, {least, least, least},
        {most, least, -1},
    };
    for (const auto& [a, b, sum] : cases) {
        EXPECT_EQ(byteSum(a, b), sum) << a << " + " << b;
        EXPECT_EQ(byteSum(b, a), sum) << b << " + " << a;
    }
}

}  // namespace
}  // namespace bildkurier
