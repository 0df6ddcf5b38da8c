// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SpeedMeter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace bildkurier {
namespace {

using Samples = std::deque<SpeedMeter::Sample>;

SpeedMeter fed(const std::vector<SpeedMeter::Sample>& samples) {
    SpeedMeter meter;
    for (const auto& [time, bytes] : samples) meter.sample(bytes, time);
    return meter;
}

TEST(SpeedMeter, BeginsWithNothing) {
    const SpeedMeter meter;
    EXPECT_EQ(meter.window, 2.0);
    EXPECT_EQ(meter.reading, SpeedMeter::Reading{});
    EXPECT_TRUE(meter.samples.empty());
    EXPECT_EQ(meter.start, std::nullopt);
}

TEST(SpeedMeter, ReadsZeroAfterOneSample) {
    const SpeedMeter meter = fed({{5, 1'000'000}});
    EXPECT_EQ(meter.reading, SpeedMeter::Reading{});
    EXPECT_EQ(meter.samples, (Samples{{5, 1'000'000}}));
    EXPECT_EQ(meter.start, (SpeedMeter::Sample{5, 1'000'000}));
}

TEST(SpeedMeter, MeasuresOverItsWindow) {
    const SpeedMeter meter = fed({{0, 0}, {1, 1'000'000}, {2, 2'000'000}, {3, 3'000'000}});
    EXPECT_EQ(meter.samples, (Samples{{1, 1'000'000}, {2, 2'000'000}, {3, 3'000'000}}));
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{1e6, 1e6, 1e6}));
}

TEST(SpeedMeter, KeepsASampleThatIsExactlyAsOldAsTheWindow) {
    SpeedMeter meter = fed({{0, 0}, {2, 10}});
    EXPECT_EQ(meter.samples, (Samples{{0, 0}, {2, 10}}));
    meter.sample(20, 2.25);
    EXPECT_EQ(meter.samples, (Samples{{2, 10}, {2.25, 20}}));
}

TEST(SpeedMeter, FallsToZeroWhenOnlyTheNewestSampleIsLeft) {
    const SpeedMeter meter = fed({{0, 0}, {1, 100}, {11, 1100}});
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{0, 100, 100}));
}

TEST(SpeedMeter, TellsCurrentAverageAndPeakApart) {
    const SpeedMeter meter = fed({{0, 0}, {1, 400}, {2, 400}, {3, 400}, {4, 800}});
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{200, 200, 400}));
    EXPECT_EQ(fed({{0, 0}, {1, 400}, {2, 400}, {3, 400}}).reading,
              (SpeedMeter::Reading{0, 400.0 / 3, 400}));
}

TEST(SpeedMeter, ReadsZeroAndKeepsTheAverageAtTheSameTime) {
    EXPECT_EQ(fed({{1, 0}, {1, 500}}).reading, SpeedMeter::Reading{});
    SpeedMeter meter = fed({{0, 0}, {4, 400}});
    meter.sample(500, 4);
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{0, 125, 0}));
}

TEST(SpeedMeter, KeepsTheAverageWhenTheClockStandsAtTheStart) {
    SpeedMeter meter = fed({{1, 0}});
    meter.reading.average = 7;
    meter.sample(500, 1);
    EXPECT_EQ(meter.reading.average, 7);
}

TEST(SpeedMeter, BeginsANewRunWhenTheCountFalls) {
    SpeedMeter meter = fed({{0, 0}, {1, 1000}, {2, 10}});
    EXPECT_EQ(meter.samples, (Samples{{2, 10}}));
    EXPECT_EQ(meter.start, (SpeedMeter::Sample{2, 10}));
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{0, 0, 1000}));
    meter.sample(110, 3);
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{100, 100, 1000}));
}

TEST(SpeedMeter, GoesOnWhenTheCountStays) {
    EXPECT_EQ(fed({{0, 0}, {1, 100}, {2, 100}}).start, (SpeedMeter::Sample{0, 0}));
}

TEST(SpeedMeter, FollowsItsWindow) {
    SpeedMeter meter;
    meter.window = 1;
    meter.sample(0, 0);
    meter.sample(100, 1);
    meter.sample(400, 2);
    EXPECT_EQ(meter.samples, (Samples{{1, 100}, {2, 400}}));
    EXPECT_EQ(meter.reading, (SpeedMeter::Reading{300, 200, 300}));
}

TEST(SpeedMeter, SurvivesCountsThatCannotBe) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    const SpeedMeter meter = fed({{0, -most}, {1, most}});
    EXPECT_DOUBLE_EQ(meter.reading.current, 2.0 * static_cast<double>(most));
}

TEST(SpeedMeter, EqualsOneWithTheSameFields) {
    EXPECT_EQ(fed({{0, 0}, {1, 100}}), fed({{0, 0}, {1, 100}}));
    EXPECT_NE(fed({{0, 0}, {1, 100}}), fed({{0, 0}, {1, 101}}));
    SpeedMeter wider;
    wider.window = 3;
    EXPECT_NE(wider, SpeedMeter{});
}

/// What a meter must read at the end of `history`, worked out from the whole of it.
SpeedMeter::Reading naiveReading(const std::vector<SpeedMeter::Sample>& history, double window) {
    double peak = 0;
    double current = 0;
    double average = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < history.size(); ++i) {
        const auto [now, bytes] = history[i];
        if (i > 0 && bytes < history[i - 1].bytes) {
            start = i;
            average = 0;
        }
        std::size_t oldest = start;
        while (now - history[oldest].time > window) ++oldest;
        const auto since = [&, &time = now, &count = bytes](std::size_t from) {
            return static_cast<double>(count - history[from].bytes) / (time - history[from].time);
        };
        current = history[oldest].time < now ? since(oldest) : 0;
        if (history[start].time < now) average = since(start);
        peak = std::max(peak, current);
    }
    return {current, average, peak};
}

RC_GTEST_PROP(SpeedMeter, ReadsWhatItsWholeHistorySays, ()) {
    const auto steps = *rc::gen::container<std::vector<std::pair<int, int>>>(
        rc::gen::pair(rc::gen::inRange(0, 12), rc::gen::inRange(-100, 1000)));
    std::vector<SpeedMeter::Sample> history;
    SpeedMeter meter;
    double time = 100;
    std::int64_t bytes = 500;
    for (const auto& [quarters, growth] : steps) {
        time += quarters * 0.25;
        bytes = std::max<std::int64_t>(bytes + growth, 0);
        history.push_back({time, bytes});
        meter.sample(bytes, time);
        RC_ASSERT(meter.reading == naiveReading(history, meter.window));
        RC_ASSERT(meter.samples.back() == history.back());
        RC_ASSERT(time - meter.samples.front().time <= meter.window);
    }
}

}  // namespace
}  // namespace bildkurier
