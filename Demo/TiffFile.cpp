// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TiffFile.h"

#include "LittleEndian.h"

#include <cstdint>
#include <vector>

namespace bildkurier {
namespace {

constexpr std::uint16_t typeShort = 3;
constexpr std::uint16_t typeLong = 4;

struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = typeLong;
    std::uint32_t count = 1;
    std::uint32_t value = 0;  ///< or where in the file the values are
};

}  // namespace

std::string encodeTiff(const Picture& picture) {
    const std::string pixels(picture.points.begin(), picture.points.end());
    const std::uint32_t headerSize = 8;
    const std::string bitsPerSample = littleEndian<std::uint16_t>(8) +
                                      littleEndian<std::uint16_t>(8) +
                                      littleEndian<std::uint16_t>(8);
    const auto pixelStart = headerSize + static_cast<std::uint32_t>(bitsPerSample.size());
    const auto pixelSize = static_cast<std::uint32_t>(pixels.size());
    const bool oddEnd = (pixelStart + pixelSize) % 2 != 0;
    const std::uint32_t directoryStart = pixelStart + pixelSize + (oddEnd ? 1 : 0);

    const std::vector<Entry> directory = {
        {.tag = 256, .value = static_cast<std::uint32_t>(picture.width)},
        {.tag = 257, .value = static_cast<std::uint32_t>(picture.height)},
        {.tag = 258, .type = typeShort, .count = 3, .value = headerSize},  // bits per sample
        {.tag = 259, .type = typeShort, .value = 1},                       // not compressed
        {.tag = 262, .type = typeShort, .value = 2},                       // RGB
        {.tag = 273, .value = pixelStart},
        {.tag = 277, .type = typeShort, .value = 3},                        // samples per pixel
        {.tag = 278, .value = static_cast<std::uint32_t>(picture.height)},  // rows per strip
        {.tag = 279, .value = pixelSize},
    };

    std::string file = "II" + littleEndian<std::uint16_t>(42) + littleEndian(directoryStart);
    file += bitsPerSample + pixels;
    if (oddEnd) file += '\0';
    file += littleEndian(static_cast<std::uint16_t>(directory.size()));
    for (const auto& entry : directory) {
        file += littleEndian(entry.tag) + littleEndian(entry.type) + littleEndian(entry.count) +
                littleEndian(entry.value);
    }
    return file + littleEndian<std::uint32_t>(0);
}

}  // namespace bildkurier
