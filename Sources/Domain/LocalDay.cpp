// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalDay.h"

#include "LocalTime.h"

namespace bildkurier {

std::optional<Date> startOfLocalDay(std::string_view day) { return localTime(day, "0000-00-00"); }

}  // namespace bildkurier
