// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <optional>
#include <string>

namespace bildkurier {

/// Reads when pictures were taken. Any thread, several at once.
class CaptureDates {
public:
    virtual ~CaptureDates() = default;

    /// The capture date in the metadata of the file at `path`: the camera's wall clock, taken
    /// as local time. Absent when there is none or it cannot be read. Blocks.
    virtual std::optional<Date> captureDate(const std::string& path) = 0;
};

}  // namespace bildkurier
