// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <chrono>
#include <string>

namespace bildkurier {

/// What a camera writes into its pictures.
struct CaptureMetadata {
    std::chrono::local_seconds captured;  ///< the camera's wall clock

    /// The picture file `file` (JPEG, TIFF) with this in it.
    std::string writtenInto(const std::string& file) const;

    /// The content of a sidecar with a rating from 1 to 5.
    std::string asXmp(int rating) const;
};

}  // namespace bildkurier
