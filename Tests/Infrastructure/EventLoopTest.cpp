// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

TEST(EventLoop, RunsPostedTasksInOrderAndLater) {
    EventLoop loop;
    std::vector<int> order;
    loop.post([&] {
        loop.post([&] { order.push_back(3); });
        order.push_back(1);
    });
    loop.post([&] {
        order.push_back(2);
        loop.stop();
        loop.post([&] { order.push_back(4); });
    });
    EXPECT_TRUE(order.empty());
    loop.run();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
    loop.stop();
    loop.run();
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
}

TEST(EventLoop, TakesTasksFromOtherThreads) {
    EventLoop loop;
    int sum = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&loop, &sum] {
            for (int n = 0; n < 1000; ++n) {
                loop.post([&loop, &sum] {
                    if (++sum == 4000) loop.stop();
                });
            }
        });
    }
    loop.run();
    EXPECT_EQ(sum, 4000);
    for (std::thread& thread : threads) thread.join();
}

TEST(EventLoop, RunsATaskOnceAfterItsDelay) {
    EventLoop loop;
    const Instant begun = loop.now();
    Instant ran;
    int times = 0;
    const Handle timer = loop.after(Duration(0.02), [&] {
        ran = loop.now();
        ++times;
    });
    const Handle end = loop.after(Duration(0.08), [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(times, 1);
    EXPECT_GE(ran - begun, Duration(0.02));
}

TEST(EventLoop, RepeatsATaskUntilItsHandleIsDroppedByTheTaskItself) {
    EventLoop loop;
    int times = 0;
    Handle timer;
    Handle end;
    timer = loop.every(Duration(0.005), [&] {
        if (++times < 3) return;
        timer.reset();
        end = loop.after(Duration(0.03), [&] { loop.stop(); });
    });
    loop.run();
    EXPECT_EQ(times, 3);
}

TEST(EventLoop, NeverRunsATimerWhoseHandleIsGone) {
    EventLoop loop;
    bool ran = false;
    loop.after(Duration(0), [&] { ran = true; }).reset();
    loop.every(Duration(0.001), [&] { ran = true; }).reset();
    const Handle end = loop.after(Duration(0.02), [&] { loop.stop(); });
    loop.run();
    EXPECT_FALSE(ran);
}

TEST(EventLoop, RunsTimersInTheOrderTheyAreDue) {
    EventLoop loop;
    std::vector<int> order;
    const Handle late = loop.after(Duration(0.02), [&] {
        order.push_back(2);
        loop.stop();
    });
    const Handle early = loop.after(Duration(0.01), [&] { order.push_back(1); });
    loop.run();
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(EventLoop, LeavesRoomForTasksBesideATimerThatIsAlwaysDue) {
    EventLoop loop;
    int beats = 0;
    bool ran = false;
    const Handle timer = loop.every(Duration(1e-9), [&] {
        if (++beats == 1) loop.post([&] { ran = true; });
        if (beats == 10) loop.stop();
        if (beats == 1000) std::abort();
    });
    loop.run();
    EXPECT_TRUE(ran);
}

TEST(EventLoop, DropsWhatIsPostedAtItsEnd) {
    const auto held = std::make_shared<int>(1);
    {
        EventLoop loop;
        loop.post([held] { FAIL(); });
        EXPECT_EQ(held.use_count(), 2);
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST(EventLoop, KnowsTheTimeOfDay) {
    const auto before = std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
    const Date date = EventLoop().date();
    EXPECT_GE(date, before);
    EXPECT_LE(date, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace bildkurier
