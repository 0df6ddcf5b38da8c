// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventsUntil.h"
#include "SingleInstance.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <memory>
#include <optional>

namespace bildkurier {
namespace {

class SingleInstanceTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string place = folder.path("run/ä");
};

TEST_F(SingleInstanceTest, IsFirstWhenThereIsNoOther) {
    EXPECT_TRUE(SingleInstance(place).isFirst());
}

TEST_F(SingleInstanceTest, TellsTheFirstOfEveryOther) {
    SingleInstance first(place);
    int told = 0;
    first.onAnother = [&] { ++told; };
    for (int another = 1; another <= 2; ++another) {
        const SingleInstance other(place);
        EXPECT_FALSE(other.isFirst());
        EXPECT_TRUE(other.hasToldFirst());
    }
    EXPECT_TRUE(eventsUntil([&] { return told == 2; }));
}

TEST_F(SingleInstanceTest, KnowsWhenTheFirstDoesNotListen) {
    const SingleInstance first(place);
    ASSERT_TRUE(QFile::remove(QString::fromStdString(place + "/window")));
    const SingleInstance other(place);
    EXPECT_FALSE(other.isFirst());
    EXPECT_FALSE(other.hasToldFirst());
}

TEST_F(SingleInstanceTest, IsFirstAgainWhenTheFirstHasEnded) {
    auto first = std::make_unique<SingleInstance>(place);
    first.reset();
    EXPECT_TRUE(SingleInstance(place).isFirst());
}

TEST_F(SingleInstanceTest, KeepsUsersApart) {
    const SingleInstance first(place);
    EXPECT_TRUE(SingleInstance(folder.path("other")).isFirst());
}

TEST_F(SingleInstanceTest, IsFirstWhereNoLockCanBeHad) {
    EXPECT_TRUE(SingleInstance("/dev/null/run").isFirst());
}

}  // namespace
}  // namespace bildkurier
