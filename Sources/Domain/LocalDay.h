// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <optional>
#include <string_view>

namespace bildkurier {

/// The first moment, in the local time zone, of a day written "yyyy-MM-dd"; absent when the
/// text is no such day.
std::optional<Date> startOfLocalDay(std::string_view day);

/// The first moment of the day in which `date` lies, and of the day after it, in the local time
/// zone. Where midnight is skipped for summer time, the day begins later.
Date startOfLocalDay(Date date);
Date startOfNextLocalDay(Date date);

}  // namespace bildkurier
