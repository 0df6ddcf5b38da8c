// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFoundation.h"
#include "ProcessInfoSleepBlocker.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

using Calls = std::vector<std::string>;

class ProcessInfoSleepBlockerTest : public testing::Test {
protected:
    FakeFoundation& fake = FakeFoundation::shared();

    void SetUp() override { FakeFoundation::reset(); }
};

TEST_F(ProcessInfoSleepBlockerTest, HoldsOneActivityOfTheUserUntilItEnds) {
    ProcessInfoSleepBlocker blocker;
    blocker.end();
    EXPECT_TRUE(fake.calls.empty());
    blocker.begin("Bildkurier läuft");
    blocker.begin("noch einmal");
    EXPECT_EQ(fake.calls, Calls{"begin 0xffffff Bildkurier läuft"});
    blocker.end();
    blocker.end();
    EXPECT_EQ(fake.calls, (Calls{"begin 0xffffff Bildkurier läuft", "end Bildkurier läuft"}));
    blocker.begin("b");
    EXPECT_EQ(fake.calls.back(), "begin 0xffffff b");
}

TEST_F(ProcessInfoSleepBlockerTest, EndsTheActivityAtItsOwnEnd) {
    {
        ProcessInfoSleepBlocker().begin("a");
    }
    EXPECT_EQ(fake.calls, (Calls{"begin 0xffffff a", "end a"}));
}

}  // namespace
}  // namespace bildkurier
