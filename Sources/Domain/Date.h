// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <chrono>

namespace bildkurier {

/// A point in time, to the millisecond. Days are always days of the local time zone.
using Date = std::chrono::sys_time<std::chrono::milliseconds>;

}  // namespace bildkurier
