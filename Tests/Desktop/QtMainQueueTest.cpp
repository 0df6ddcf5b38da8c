// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventsUntil.h"
#include "QtMainQueue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;

TEST(QtMainQueue, RunsTasksLaterAndInOrder) {
    QtMainQueue queue;
    std::string order;
    queue.post([&] { order += "a"; });
    queue.post([&] { order += "b"; });
    order += "-";
    ASSERT_TRUE(eventsUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "-ab");
}

TEST(QtMainQueue, RunsTasksOfOtherThreadsOnTheMainThread) {
    QtMainQueue queue;
    std::thread::id ran;
    std::thread([&] { queue.post([&] { ran = std::this_thread::get_id(); }); }).join();
    ASSERT_TRUE(eventsUntil([&] { return ran != std::thread::id(); }));
    EXPECT_EQ(ran, std::this_thread::get_id());
}

TEST(QtMainQueue, DropsTasksThatOutliveIt) {
    bool ran = false;
    std::optional<QtMainQueue> queue(std::in_place);
    queue->post([&] { ran = true; });
    queue.reset();
    QtMainQueue next;
    bool over = false;
    next.post([&] { over = true; });
    ASSERT_TRUE(eventsUntil([&] { return over; }));
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, RunsATaskOnceAfterItsDelay) {
    QtMainQueue queue;
    int runs = 0;
    bool over = false;
    const auto start = queue.now();
    auto ranAt = start;
    const Handle once = queue.after(5ms, [&] {
        ++runs;
        ranAt = queue.now();
    });
    const Handle later = queue.after(30ms, [&] { over = true; });
    ASSERT_TRUE(eventsUntil([&] { return over; }));
    EXPECT_EQ(runs, 1);
    EXPECT_GE(ranAt - start, 4ms);
}

TEST(QtMainQueue, RunsATaskAgainAndAgainUntilItsHandleIsDropped) {
    QtMainQueue queue;
    int runs = 0;
    Handle often;
    often = queue.every(1ms, [&] {
        if (++runs == 3) often.reset();
    });
    bool over = false;
    const Handle later = queue.after(30ms, [&] { over = true; });
    ASSERT_TRUE(eventsUntil([&] { return over; }));
    EXPECT_EQ(runs, 3);
}

TEST(QtMainQueue, ForgetsATaskWhoseHandleIsDropped) {
    QtMainQueue queue;
    bool ran = false;
    queue.after(0ms, [&] { ran = true; }).reset();
    bool over = false;
    const Handle later = queue.after(10ms, [&] { over = true; });
    ASSERT_TRUE(eventsUntil([&] { return over; }));
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, KnowsTheDate) {
    const Date before =
        std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    EXPECT_GE(QtMainQueue().date(), before);
    EXPECT_LE(QtMainQueue().date() - before, 1h);
}

}  // namespace
}  // namespace bildkurier
