// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <string_view>

namespace bildkurier {

/// A RIFF chunk: name of four letters, size, content, padded to an even size.
std::string riffChunk(std::string_view name, std::string_view content);

/// A chunk that holds chunks; `name` is "RIFF" or "LIST".
std::string riffList(std::string_view name, std::string_view type, std::string_view chunks);

}  // namespace bildkurier
