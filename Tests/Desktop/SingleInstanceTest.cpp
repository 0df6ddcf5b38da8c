// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventsUntil.h"
#include "SingleInstance.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QThread>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

class SingleInstanceTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string place = folder.path("run/ä");
    static constexpr std::chrono::milliseconds shortWhile{100};
};

TEST_F(SingleInstanceTest, IsFirstWhenThereIsNoOther) {
    EXPECT_TRUE(SingleInstance(place).isFirst());
}

TEST_F(SingleInstanceTest, TellsTheFirstOfEveryOther) {
    SingleInstance first(place);
    std::vector<std::string> told;
    first.onAnother = [&](const std::string& token) { told.push_back(token); };
    for (const std::string token : {"Marke 1", ""}) {
        std::atomic<bool> isFirst = true;
        std::atomic<bool> hasToldFirst = false;
        std::atomic<bool> isDone = false;
        const std::jthread start([&] {
            const SingleInstance other(place, token, std::chrono::seconds(20));
            isFirst = other.isFirst();
            hasToldFirst = other.hasToldFirst();
            isDone = true;
        });
        EXPECT_TRUE(eventsUntil([&] { return isDone.load(); }));
        EXPECT_FALSE(isFirst);
        EXPECT_TRUE(hasToldFirst);
    }
    EXPECT_EQ(told, (std::vector<std::string>{"Marke 1", ""}));
}

TEST_F(SingleInstanceTest, KnowsWhenTheFirstDoesNotListen) {
    const SingleInstance first(place);
    ASSERT_TRUE(QFile::remove(QString::fromStdString(place + "/window")));
    const SingleInstance other(place, {}, shortWhile);
    EXPECT_FALSE(other.isFirst());
    EXPECT_FALSE(other.hasToldFirst());
}

TEST_F(SingleInstanceTest, KnowsWhenTheFirstDoesNotAnswer) {
    const SingleInstance first(place);  // hangs: it handles no events
    const SingleInstance other(place, {}, shortWhile);
    EXPECT_FALSE(other.isFirst());
    EXPECT_FALSE(other.hasToldFirst());
}

TEST_F(SingleInstanceTest, IsFirstAgainWhenTheFirstHasEnded) {
    auto first = std::make_unique<SingleInstance>(place);
    first.reset();
    EXPECT_TRUE(SingleInstance(place).isFirst());
}

TEST_F(SingleInstanceTest, IsFirstWhenTheFirstHasLetGo) {
    SingleInstance first(place);
    first.letGo();
    EXPECT_TRUE(SingleInstance(place).isFirst());
    EXPECT_TRUE(SingleInstance(place).isFirst());
}

TEST_F(SingleInstanceTest, TakesThePlaceOfAFirstThatLetsGoInsteadOfAnswering) {
    SingleInstance first(place);
    std::atomic<bool> isFirst = false;
    std::atomic<bool> hasToldFirst = false;
    const std::unique_ptr<QThread> start(QThread::create([&] {
        const SingleInstance other(place, "Marke", std::chrono::seconds(20));
        isFirst = other.isFirst();
        hasToldFirst = other.hasToldFirst();
    }));
    start->start();
    first.onAnother = [](const std::string&) { ADD_FAILURE() << "answered"; };
    first.letGo();
    start->wait();
    EXPECT_TRUE(isFirst);
    EXPECT_FALSE(hasToldFirst);
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
