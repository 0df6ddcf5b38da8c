// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ImportSummary.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(ImportSummary, NamesOnlyWhatApplies) {
    const std::string bytes = formatBytes(14'200'000'000);
    const std::string speed = formatSpeed(38'500'000);
    const struct {
        ImportRunner::Progress progress;
        double average;
        bool cancelled;
        std::string line;
    } cases[] = {
        {{.done = 212, .failed = 2, .bytesDone = 14'200'000'000},
         38'500'000,
         true,
         "Fertig: 212 geladen (" + bytes + "), Ø " + speed + ", 2 fehlgeschlagen, abgebrochen"},
        {{.done = 212, .bytesDone = 14'200'000'000},
         38'500'000,
         false,
         "Fertig: 212 geladen (" + bytes + "), Ø " + speed},
        {{.done = 1, .failed = 1, .bytesDone = 14'200'000'000},
         0,
         false,
         "Fertig: 1 geladen (" + bytes + "), 1 fehlgeschlagen"},
        {{}, 0, true, "Fertig: 0 geladen (0 KB), abgebrochen"},
        {{}, -1, false, "Fertig: 0 geladen (0 KB)"},
    };
    for (const auto& [progress, average, cancelled, line] : cases) {
        EXPECT_EQ(importSummary(progress, average, cancelled), line);
    }
}

}  // namespace
}  // namespace bildkurier
