// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace bildkurier {

/// Measures a transfer's speed from its cumulative byte count.
struct SpeedMeter {
    /// Bytes per second.
    struct Reading {
        double current = 0;  ///< over the sliding window
        double average = 0;  ///< since the first sample of the run
        double peak = 0;     ///< highest `current` since the owner's last reset

        bool operator==(const Reading&) const = default;
    };

    struct Sample {
        double time = 0;         ///< seconds
        std::int64_t bytes = 0;  ///< cumulative

        bool operator==(const Sample&) const = default;
    };

    double window = 2.0;  ///< seconds
    Reading reading;
    std::deque<Sample> samples;   ///< oldest first, at most `window` seconds old
    std::optional<Sample> start;  ///< first sample of the run

    /// Takes the cumulative byte count of the run at a monotonic time in seconds. A count
    /// that falls begins a new run: the average restarts, the peak stays.
    void sample(std::int64_t bytes, double at);

    bool operator==(const SpeedMeter&) const = default;
};

}  // namespace bildkurier
