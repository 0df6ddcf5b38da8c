// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemCallFilter.h"
#include "ThreadPool.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <future>
#include <latch>

namespace bildkurier {
namespace {

TEST(ThreadPool, LetsNoTaskWaitForAnother) {
    constexpr int tasks = 40;
    std::latch together(tasks);
    std::atomic<int> ended = 0;
    {
        ThreadPool pool;
        std::promise<void> all;
        for (int i = 0; i < tasks; ++i) {
            pool.run([&] {
                together.arrive_and_wait();
                if (++ended == tasks) all.set_value();
            });
        }
        all.get_future().wait();
    }
    EXPECT_EQ(ended, tasks);
}

/// Whether two tasks that are run now meet, which takes two threads at once.
bool twoTasksMeet(ThreadPool& pool) {
    std::latch begun(2);
    std::latch ended(2);
    std::atomic<int> met = 0;
    const auto task = [&] {
        begun.count_down();
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!begun.try_wait() && std::chrono::steady_clock::now() < patience)
            std::this_thread::yield();
        if (begun.try_wait()) ++met;
        ended.count_down();
    };
    pool.run(task);
    pool.run(task);
    ended.wait();
    return met == 2;
}

TEST(ThreadPool, WakesThreadsThatSleepWhereTooFewAreLookingForTasks) {
    ThreadPool pool;
    ASSERT_TRUE(twoTasksMeet(pool));
    for (int round = 0; round < 100; ++round) {
        // Long enough for all threads to fall asleep but the one that is kept busy.
        const auto asleep = std::chrono::steady_clock::now() + std::chrono::milliseconds(1);
        while (std::chrono::steady_clock::now() < asleep) {
            std::atomic<bool> ran = false;
            pool.run([&ran] { ran = true; });
            while (!ran) std::this_thread::yield();
        }
        ASSERT_TRUE(twoTasksMeet(pool)) << round;
    }
}

TEST(ThreadPool, NeverRunsATaskInTheCallersThread) {
    ThreadPool pool;
    std::promise<std::thread::id> ran;
    pool.run([&] { ran.set_value(std::this_thread::get_id()); });
    EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST(ThreadPool, RunsManyTasksOneAfterTheOther) {
    ThreadPool pool;
    int sum = 0;
    for (int i = 0; i < 1000; ++i) {
        std::promise<void> ran;
        pool.run([&] {
            ++sum;
            ran.set_value();
        });
        ran.get_future().wait();
    }
    EXPECT_EQ(sum, 1000);
}

TEST(ThreadPool, WaitsAtItsEndForTheTaskThatRuns) {
    std::atomic<bool> done = false;
    std::promise<void> begun;
    std::promise<void> release;
    auto released = release.get_future();
    std::thread destroyer;
    {
        auto pool = std::make_unique<ThreadPool>();
        pool->run([&] {
            begun.set_value();
            released.wait();
            done = true;
        });
        begun.get_future().wait();
        destroyer = std::thread([pool = std::move(pool)]() mutable { pool.reset(); });
    }
    release.set_value();
    destroyer.join();
    EXPECT_TRUE(done);
}

TEST(ThreadPool, DropsAtItsEndWhatHasNotBegun) {
    int threads = 0;
    const auto one = [&](const seccomp_data&) { return threads++ == 0 ? 0 : EAGAIN; };
    std::atomic<bool> ran = false;
    const auto action = [&ran] {
        std::promise<void> begun;
        std::promise<void> dropped;
        auto released = dropped.get_future();
        auto pool = std::make_unique<ThreadPool>();
        pool->run([&] {
            begun.set_value();
            released.wait_for(std::chrono::seconds(10));
        });
        begun.get_future().wait();
        const auto drop = [&dropped](void*) { dropped.set_value(); };
        pool->run([&ran, held = std::shared_ptr<void>(nullptr, drop)] { ran = true; });
        pool.reset();
    };
    if (!runFiltered({SYS_clone, SYS_clone3}, one, action))
        GTEST_SKIP() << "the kernel lets no calls be filtered";
    EXPECT_GT(threads, 1);
    EXPECT_FALSE(ran);
}

TEST(ThreadPool, LetsGoOfATaskOnceItHasRun) {
    ThreadPool pool;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<void> next;
    pool.run([held = std::move(held)] {});
    pool.run([&] { next.set_value(); });
    next.get_future().wait();
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!watched.expired() && std::chrono::steady_clock::now() < patience)
        std::this_thread::yield();
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace bildkurier
