// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SpeedMeter.h"

#include <algorithm>

namespace bildkurier {
namespace {

double speed(const SpeedMeter::Sample& from, const SpeedMeter::Sample& to) {
    return (static_cast<double>(to.bytes) - static_cast<double>(from.bytes)) /
           (to.time - from.time);
}

}  // namespace

void SpeedMeter::sample(std::int64_t bytes, double at) {
    const Sample newest{at, bytes};
    if (!samples.empty() && bytes < samples.back().bytes) {
        samples.clear();
        start.reset();
        reading.average = 0;
    }
    if (!start) start = newest;
    samples.push_back(newest);
    std::erase_if(samples, [&](const Sample& sample) { return at - sample.time > window; });

    reading.current = 0;
    if (samples.size() >= 2 && samples.front().time < at) {
        reading.current = speed(samples.front(), newest);
    }
    if (start->time < at) reading.average = speed(*start, newest);
    reading.peak = std::max(reading.peak, reading.current);
}

}  // namespace bildkurier
