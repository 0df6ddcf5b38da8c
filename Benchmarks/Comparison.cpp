// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace bildkurier {

namespace {

bool limitsKept = true;

}  // namespace

Measurement whole(Action action) {
    return [action = std::move(action)] {
        const auto begin = std::chrono::steady_clock::now();
        action();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

void judge(benchmark::State& state, double figure, double limit, const std::string& unit) {
    state.counters[unit] = figure;
    const bool isWithin = figure <= limit;
    if (!isWithin) limitsKept = false;
    state.SetLabel(fmt::format("{} {}", isWithin ? "within" : "OVER", limit));
}

bool keptAllLimits() { return limitsKept; }

void compare(benchmark::State& state, const Comparison& comparison) {
    std::vector<double> ours;
    std::vector<double> theirs;
    for ([[maybe_unused]] const auto _ : state) {
        comparison.prepare();
        theirs.push_back(comparison.theirs());
        comparison.prepare();
        ours.push_back(comparison.ours());
        state.SetIterationTime(ours.back());
    }
    state.counters["ours_s"] = median(ours);
    state.counters["theirs_s"] = median(theirs);
    judge(state, median(ours) / median(theirs), comparison.limit, "ratio");
}

void shell(const std::string& command) {
    // The only thread that touches the environment here is this one.
    if (std::system(command.c_str()) != 0) {  // NOLINT(concurrency-mt-unsafe)
        throw std::runtime_error("failed: " + command);
    }
}

std::string quoted(const std::string& path) {
    std::string word = "'";
    for (const char c : path) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

}  // namespace bildkurier
