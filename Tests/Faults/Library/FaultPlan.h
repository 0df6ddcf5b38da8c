// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Touch.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace bildkurier::faults {

/// What is to go wrong, and when. Calls that touch anything below `root` are numbered from 1.
///
/// FAULTS_ROOT       folder that counts, absolute and without links; none: nothing happens
/// FAULTS_LOG        file to which a line per call is appended
/// FAULTS_FAIL_AT    number of the call that fails
/// FAULTS_ERRNO      how: ENOSPC, EIO, EACCES …, or SHORT: half of a write is written
/// FAULTS_MODE       once (the default), or forever: from then on all calls that can fail so
/// FAULTS_KILL_AT    number of the call at which the process is killed
/// FAULTS_KILL       before (the default), during (half of a write is written), or after it
/// FAULTS_STOP_AT    number of the call before which the process stops, until told to go on
/// FAULTS_SIGINT_AT  one or two numbers, separated by a comma, of calls that a Ctrl-C precedes
struct FaultPlan {
    enum class KillTime : std::uint8_t { before, during, after };

    static FaultPlan fromEnvironment();

    bool concerns(const Touch& touch) const;
    bool fails(long number, const Touch& touch) const;
    bool halves(long number, const Touch& touch) const;

    std::string_view root;  ///< empty: nothing counts
    const char* log = nullptr;
    long failAt = 0;
    int error = 0;  ///< errno value; 0 with `failAt` for a short write
    bool forever = false;
    long killAt = 0;
    KillTime killTime = KillTime::before;
    long stopAt = 0;
    std::array<long, 2> interruptAt{};

private:
    bool isDue(long number) const;
};

}  // namespace bildkurier::faults
