// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace bildkurier {

using Action = std::function<void()>;

/// Does something, and answers how many seconds of it count.
using Measurement = std::function<double()>;

/// Of all that the action does.
Measurement whole(Action action);

/// Something of ours beside what a user would take instead.
struct Comparison {
    Measurement ours;
    Measurement theirs;
    Action prepare = [] {};  ///< before each of them, not measured
    double limit = 1;        ///< the ratio that ours must not exceed
};

/// Puts a figure and whether it is within its limit at the end of the row.
void judge(benchmark::State& state, double figure, double limit, const std::string& unit);

/// Whether every figure that was judged was within its limit.
bool keptAllLimits();

/// Measures both in turn, once per iteration, and reports the medians' ratio.
void compare(benchmark::State& state, const Comparison& comparison);

double median(std::vector<double> values);

/// Runs a shell command; throws when it fails.
void shell(const std::string& command);

/// `path` as one word for the shell.
std::string quoted(const std::string& path);

}  // namespace bildkurier
