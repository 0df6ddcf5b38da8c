// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Workers.h"

#include <gtest/gtest.h>

#include <latch>
#include <mutex>
#include <set>
#include <thread>

namespace bildkurier {
namespace {

TEST(Workers, RunAllAtOnceEachWithItsOwnNumber) {
    constexpr std::size_t count = 5;
    std::latch together(count);
    std::mutex mutex;
    std::set<std::size_t> numbers;
    std::set<std::thread::id> threads;
    runWorkers(count, [&](std::size_t worker) {
        together.arrive_and_wait();
        const std::lock_guard lock(mutex);
        numbers.insert(worker);
        threads.insert(std::this_thread::get_id());
    });
    EXPECT_EQ(numbers, (std::set<std::size_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(threads.size(), count);
    EXPECT_TRUE(threads.contains(std::this_thread::get_id()));
}

}  // namespace
}  // namespace bildkurier
