// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Riff.h"

#include "LittleEndian.h"

#include <cstdint>

namespace bildkurier {

std::string riffChunk(std::string_view name, std::string_view content) {
    std::string chunk(name);
    chunk += littleEndian(static_cast<std::uint32_t>(content.size()));
    chunk += content;
    if (content.size() % 2 != 0) chunk += '\0';
    return chunk;
}

std::string riffList(std::string_view name, std::string_view type, std::string_view chunks) {
    return riffChunk(name, std::string(type).append(chunks));
}

}  // namespace bildkurier
