// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <chrono>

namespace bildkurier {

/// `time` after the midnight, in UTC, at which `day` begins.
inline Date utc(std::chrono::year_month_day day,
                std::chrono::milliseconds time = std::chrono::milliseconds::zero()) {
    return std::chrono::sys_days(day) + time;
}

}  // namespace bildkurier
