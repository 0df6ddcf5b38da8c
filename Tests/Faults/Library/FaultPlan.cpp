// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FaultPlan.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace bildkurier::faults {
namespace {

std::string_view variable(const char* name) {
    // Read once, before main, where there is one thread.
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return value ? value : "";
}

long number(std::string_view text) {
    long value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

int errorNamed(std::string_view name) {
    constexpr int last = 133;
    for (int error = 1; error <= last; ++error) {
        const char* known = strerrorname_np(error);
        if (known && name == known) return error;
    }
    return 0;
}

}  // namespace

FaultPlan FaultPlan::fromEnvironment() {
    FaultPlan plan;
    plan.root = variable("FAULTS_ROOT");
    const auto log = variable("FAULTS_LOG");
    if (!log.empty()) plan.log = log.data();
    plan.failAt = number(variable("FAULTS_FAIL_AT"));
    plan.error = errorNamed(variable("FAULTS_ERRNO"));
    plan.forever = variable("FAULTS_MODE") == "forever";
    plan.killAt = number(variable("FAULTS_KILL_AT"));
    const auto time = variable("FAULTS_KILL");
    if (time == "during") plan.killTime = KillTime::during;
    if (time == "after") plan.killTime = KillTime::after;
    plan.stopAt = number(variable("FAULTS_STOP_AT"));
    const auto interrupts = variable("FAULTS_SIGINT_AT");
    plan.interruptAt[0] = number(interrupts);
    const auto comma = interrupts.find(',');
    if (comma != std::string_view::npos) plan.interruptAt[1] = number(interrupts.substr(comma + 1));
    return plan;
}

bool FaultPlan::concerns(const Touch& touch) const {
    return !root.empty() && (touch.path.isWithin(root) || touch.second.isWithin(root));
}

bool FaultPlan::fails(long number, const Touch& touch) const {
    if (error == 0 || !isDue(number)) return false;
    if (error == ENOSPC || error == EDQUOT) return touch.needsSpace;
    if (error == EACCES || error == EPERM) return touch.usesPath;
    return true;
}

bool FaultPlan::halves(long number, const Touch& touch) const {
    if (touch.bytes < 2) return false;
    return (error == 0 && isDue(number)) || (number == killAt && killTime == KillTime::during);
}

bool FaultPlan::isDue(long number) const {
    if (failAt == 0) return false;
    return forever ? number >= failAt : number == failAt;
}

}  // namespace bildkurier::faults
