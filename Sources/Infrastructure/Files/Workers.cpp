// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Workers.h"

#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace bildkurier {

void runWorkers(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::mutex guard;
    std::exception_ptr thrown;
    const auto run = [&](std::size_t worker) {
        try {
            work(worker);
        } catch (...) {
            const std::scoped_lock lock(guard);
            if (!thrown) thrown = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> helpers;
        for (std::size_t worker = 1; worker < count; ++worker) {
            try {
                helpers.emplace_back([&run, worker] { run(worker); });
            } catch (const std::system_error&) {
                break;  // no more threads to be had: those that run do all the work
            }
        }
        run(0);
    }
    if (thrown) std::rethrow_exception(thrown);
}

}  // namespace bildkurier
