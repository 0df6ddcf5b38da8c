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

}  // namespace bildkurier
