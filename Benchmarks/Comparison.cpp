// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace bildkurier {

namespace {

double seconds(const Action& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

}  // namespace

void compare(benchmark::State& state, const Comparison& comparison) {
    std::vector<double> ours;
    std::vector<double> theirs;
    for (auto _ : state) {
        comparison.prepare();
        theirs.push_back(seconds(comparison.theirs));
        comparison.prepare();
        ours.push_back(seconds(comparison.ours));
        state.SetIterationTime(ours.back());
    }
    const double ratio = median(ours) / median(theirs);
    state.counters["ours_s"] = median(ours);
    state.counters["theirs_s"] = median(theirs);
    state.counters["ratio"] = ratio;
    state.SetLabel(
        fmt::format("{} {:.2f}", ratio <= comparison.limit ? "within" : "OVER", comparison.limit));
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
