// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <optional>
#include <string_view>

namespace bildkurier {

/// The local time that `text` shows: "YYYY:MM:DD HH:MM:SS", maybe padded with blanks or NUL
/// at its end. Absent for anything else, as for the zeros or blanks of a clock never set.
std::optional<Date> exifTime(std::string_view text);

}  // namespace bildkurier
