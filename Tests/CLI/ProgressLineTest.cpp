// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ProgressBar.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(ProgressLine, ShowsShareFilesBytesSpeedAndTimeLeft) {
    const ImportRunner::Progress progress{.total = 30,
                                          .done = 10,
                                          .failed = 2,
                                          .bytesDone = 1'000'000'000,
                                          .currentBytes = 200'000'000};
    EXPECT_EQ(
        progressLine(progress, 2'400'000'000, {.current = 38'500'000, .average = 20'000'000}, 120),
        "[██████████░░░░░░░░░░] 50 %  12/30 Dateien  " + formatBytes(1'200'000'000) + " von " +
            formatBytes(2'400'000'000) + "  " + formatSpeed(38'500'000) + "  noch 1:00");
}

TEST(ProgressLine, WritesHoursOnlyWhereThereAreSome) {
    const struct {
        double average;
        std::string left;
    } cases[] = {{1'000'000, "noch 1:06:40"},
                 {4'000'000'000, "noch 0:01"},
                 {0, "noch –:––"},
                 {1, "noch –:––"}};
    for (const auto& [average, left] : cases) {
        const std::string line = progressLine({}, 4'000'000'000, {.average = average}, 120);
        EXPECT_TRUE(line.ends_with(left)) << line;
    }
}

TEST(ProgressLine, StaysWithinItsBarWhateverTheCameraSays) {
    EXPECT_NE(progressLine({.bytesDone = 500}, 100, {}, 120).find("] 100 %"), std::string::npos);
    EXPECT_NE(progressLine({}, 0, {}, 120).find("] 0 %"), std::string::npos);
    EXPECT_NE(progressLine({.bytesDone = -5}, -7, {}, 120).find("] 0 %"), std::string::npos);
}

TEST(ProgressLine, LeavesOutWhatDoesNotFit) {
    const ImportRunner::Progress progress{.total = 30, .done = 12, .bytesDone = 500};
    const std::string bytes = "  " + formatBytes(500) + " von " + formatBytes(1000);
    const std::string rest = "  " + formatSpeed(0) + "  noch –:––";
    const std::string files = "50 %  12/30 Dateien";
    const auto line = [&](std::size_t columns) {
        return progressLine(progress, 1000, {}, columns);
    };
    EXPECT_EQ(line((files + bytes).size()), files + bytes);
    EXPECT_FALSE(line((files + bytes).size() - 1).contains(bytes));
    EXPECT_EQ(line(5), "50 %");
    EXPECT_EQ(line(120), "[██████████░░░░░░░░░░] " + files + bytes + rest);
}

}  // namespace
}  // namespace bildkurier
