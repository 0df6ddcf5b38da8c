// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace bildkurier {

using Action = std::function<void()>;

/// Something of ours beside what a user would take instead.
struct Comparison {
    Action ours;
    Action theirs;
    Action prepare = [] {};  ///< before each of them, not measured
    double limit = 1;        ///< the ratio that ours must not exceed
};

/// Measures both in turn, once per iteration, and reports the medians' ratio.
void compare(benchmark::State& state, const Comparison& comparison);

/// Runs a shell command; throws when it fails.
void shell(const std::string& command);

/// `path` as one word for the shell.
std::string quoted(const std::string& path);

}  // namespace bildkurier
