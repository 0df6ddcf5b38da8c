// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ImportModelTest.h"

namespace bildkurier {
namespace {

using Phase = ImportModel::Phase;

class ImportModelRunTest : public ImportModelTest {};

TEST_F(ImportModelRunTest, ImportsWhatIsMissing) {
    make();
    const auto attached = camera("A");
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import.");
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->log(),
              (std::deque<std::string>{"✓ JPG/A.JPG  (" + formatBytes(4) + ")",
                                       "Fertig: 1 geladen (" + formatBytes(4) + ")"}));
    EXPECT_EQ(model->status(), "Nichts Neues im gewählten Zeitraum.");
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
    EXPECT_EQ(loop.timers(), 0);
}

}  // namespace
}  // namespace bildkurier
