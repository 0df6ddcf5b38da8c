// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CaptureDates.h"

namespace bildkurier {

/// Capture dates from the Exif data of all photo formats that Exiv2 reads. Never writes. Reads
/// the ends of a file, where metadata usually is, and all of it, up to 200 MiB, only when no
/// date is there.
class ExifCaptureDates final : public CaptureDates {
public:
    ExifCaptureDates();

    std::optional<Date> captureDate(const std::string& path) override;
};

}  // namespace bildkurier
