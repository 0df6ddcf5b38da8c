// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WaveFile.h"

#include "LittleEndian.h"
#include "Riff.h"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace bildkurier {

std::string encodeTone(double pitch, double seconds) {
    constexpr std::uint32_t rate = 11'025;
    constexpr std::uint16_t channels = 1;
    constexpr std::uint16_t bytesPerSample = 2;
    const std::string format = littleEndian<std::uint16_t>(1) +  // plain samples
                               littleEndian(channels) + littleEndian(rate) +
                               littleEndian(rate * channels * bytesPerSample) +
                               littleEndian(static_cast<std::uint16_t>(channels * bytesPerSample)) +
                               littleEndian(static_cast<std::uint16_t>(8 * bytesPerSample));

    std::string samples;
    const int count = static_cast<int>(seconds * rate);
    for (int i = 0; i < count; ++i) {
        const double fade = 1.0 - static_cast<double>(i) / count;
        const double wave = std::sin(2.0 * std::numbers::pi * pitch * i / rate);
        const auto sample = static_cast<std::int16_t>(8'000.0 * fade * wave);
        samples += littleEndian(static_cast<std::uint16_t>(sample));
    }
    return riffList("RIFF", "WAVE", riffChunk("fmt ", format) + riffChunk("data", samples));
}

}  // namespace bildkurier
