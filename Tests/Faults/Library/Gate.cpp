// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Gate.h"

#include "FaultPlan.h"
#include "Kernel.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <string_view>

namespace bildkurier::faults {
namespace {

// Without contents, and so without effect, in the calls made before it is read.
constinit FaultPlan plan;
constinit std::mutex turn;
constinit long calls = 0;
constinit int log = -1;

[[gnu::constructor]] void readPlan() {
    plan = FaultPlan::fromEnvironment();
    if (plan.log) log = Kernel::openLog(plan.log);
}

bool kills(long number, FaultPlan::KillTime time) {
    return number == plan.killAt && time == plan.killTime;
}

/// Sends the process a Ctrl-C and waits until it has been noticed, as long as a user might.
void interrupt() {
    Kernel::raise(SIGINT);
    for (int i = 0; i < 5'000 && Kernel::isPending(SIGINT); ++i) Kernel::sleepAMillisecond();
}

[[noreturn]] void die() {
    while (true) Kernel::raise(SIGKILL);
}

}  // namespace

bool Gate::concerns(const Touch& touch) { return plan.concerns(touch); }

Gate::Gate(const Touch& touch) : touch_(touch) {
    turn.lock();
    number_ = ++calls;
    if (number_ == plan.stopAt) Kernel::stop();
    for (const long interrupted : plan.interruptAt) {
        if (number_ == interrupted) interrupt();
    }
    if (kills(number_, FaultPlan::KillTime::before)) die();
    if (plan.fails(number_, touch)) {
        verdict_ = Verdict::fail;
    } else if (plan.halves(number_, touch)) {
        verdict_ = Verdict::halve;
    } else {
        verdict_ = Verdict::proceed;
    }
}

Gate::~Gate() { turn.unlock(); }

int Gate::error() { return plan.error; }

void Gate::done(long result, int error) {
    if (log >= 0) {
        std::array<char, sizeof(TouchedPath) * 2 + 100> line;
        const auto path = touch_.path.text();
        const auto second = touch_.second.text();
        const int length = std::snprintf(
            line.data(), line.size(), "%ld\t%s\t%.*s\t%.*s\t%ld\t%d\t%s\n", number_, touch_.name,
            static_cast<int>(path.size()), path.data(), static_cast<int>(second.size()),
            second.data(), result, result < 0 ? error : 0,
            verdict_ == Verdict::fail ? "failed" : (verdict_ == Verdict::halve ? "halved" : ""));
        Kernel::append(log, {line.data(), static_cast<std::size_t>(length)});
    }
    if (kills(number_, FaultPlan::KillTime::during) || kills(number_, FaultPlan::KillTime::after)) {
        die();
    }
}

}  // namespace bildkurier::faults
