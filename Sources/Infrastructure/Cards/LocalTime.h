// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <ctime>
#include <optional>

namespace bildkurier {

/// The moment when a clock here showed `wallClock`, summer time decided by the date; absent
/// when there is no such date or time of day.
std::optional<Date> localTime(const std::tm& wallClock);

}  // namespace bildkurier
