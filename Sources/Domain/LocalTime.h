// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <ctime>
#include <optional>
#include <string_view>

namespace bildkurier {

/// The moment when a clock here showed `wallClock`, summer time decided by the date; absent
/// when there is no such date or time of day. A time that was skipped when clocks were put
/// forward counts on from the moment when they were.
std::optional<Date> localTime(const std::tm& wallClock);

/// The same of a text that shows a year, a month and a day, and maybe hours, minutes and
/// seconds, exactly as `form` does: "0000-00-00", "0000:00:00 00:00:00".
std::optional<Date> localTime(std::string_view text, std::string_view form);

}  // namespace bildkurier
