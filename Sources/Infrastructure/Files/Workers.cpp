// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Workers.h"

#include <system_error>
#include <thread>
#include <vector>

namespace bildkurier {

void runWorkers(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::vector<std::jthread> helpers;
    for (std::size_t worker = 1; worker < count; ++worker) {
        try {
            helpers.emplace_back([&work, worker] { work(worker); });
        } catch (const std::system_error&) {
            break;  // no more threads to be had: those that run do all the work
        }
    }
    work(0);
}

}  // namespace bildkurier
