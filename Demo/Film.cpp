// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Film.h"

#include "LittleEndian.h"
#include "Riff.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>

namespace bildkurier {
namespace {

std::string number(std::integral auto value) {
    return littleEndian(static_cast<std::uint32_t>(value));
}

std::string shortNumber(std::integral auto value) {
    return littleEndian(static_cast<std::uint16_t>(value));
}

std::uint32_t largestFrame(const Film& film) {
    std::size_t largest = 0;
    for (const auto& frame : film.frames) largest = std::max(largest, frame.size());
    return static_cast<std::uint32_t>(largest);
}

std::string mainHeader(const Film& film) {
    const std::uint32_t hasIndex = 0x10;
    const auto largest = largestFrame(film);
    return number(1'000'000 / film.framesPerSecond) +  // microseconds per frame
           number(largest * static_cast<std::uint32_t>(film.framesPerSecond)) + number(0) +
           number(hasIndex) + number(film.frames.size()) + number(0) + number(1) +  // streams
           number(largest) + number(film.width) + number(film.height) + std::string(16, '\0');
}

std::string streamHeader(const Film& film) {
    return std::string("vidsMJPG") + number(0) + number(0) + number(0) + number(1) +
           number(film.framesPerSecond) +  // the rate as a fraction
           number(0) + number(film.frames.size()) + number(largestFrame(film)) +
           number(0xFFFF'FFFFU) +  // quality: not known
           number(0) + shortNumber(0) + shortNumber(0) + shortNumber(film.width) +
           shortNumber(film.height);
}

std::string streamFormat(const Film& film) {
    return number(40) + number(film.width) + number(film.height) + shortNumber(1) +
           shortNumber(24) + "MJPG" + number(film.width * film.height * 3) + std::string(16, '\0');
}

}  // namespace

std::string encodeAvi(const Film& film) {
    const std::string name = "00dc";
    std::string frames;
    std::string index;
    for (const auto& frame : film.frames) {
        const std::uint32_t keyFrame = 0x10;
        const auto offset = frames.size() + 4;  // counted from the type of the list
        index += name + number(keyFrame) + number(offset) + number(frame.size());
        frames += riffChunk(name, frame);
    }
    const std::string stream =
        riffList("LIST", "strl",
                 riffChunk("strh", streamHeader(film)) + riffChunk("strf", streamFormat(film)));
    return riffList("RIFF", "AVI ",
                    riffList("LIST", "hdrl", riffChunk("avih", mainHeader(film)) + stream) +
                        riffList("LIST", "movi", frames) + riffChunk("idx1", index));
}

}  // namespace bildkurier
