// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "DateFormatter.h"

#include <cstdint>
#include <string>

namespace bildkurier {

/// A byte count for the window and the log, in decimal units and in the number format and
/// unit names of the user's locale: "14,2 GB". Zero and less read "0 KB" (French "0 Ko").
std::string formatBytes(std::int64_t bytes);

/// A number of files or lines, in the number format of the user's locale: "1.284".
std::string formatCount(std::int64_t count);

/// A transfer speed: `formatBytes` of the whole bytes, then "/s". Below one byte per second,
/// infinite or not a number: "0 MB/s" (French "0 Mo/s").
std::string formatSpeed(double bytesPerSecond);

/// Day folders: "yyyy-MM-dd", whatever the user's language and calendar.
const DateFormatter& dayFormatter();
/// Day labels in the window: the user's short date style.
const DateFormatter& displayDay();
/// Long day labels: weekday, day, month name and year as the user's locale arranges them.
const DateFormatter& displayDayLong();
/// The time stamp of a log line: "HH:mm:ss".
const DateFormatter& logTime();

}  // namespace bildkurier
