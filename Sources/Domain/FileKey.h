// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace bildkurier {

/// The keys of many files, see `fileKey`.
using FileKeys = std::unordered_set<std::string>;

/// The one notion of a file being already present: the lower-cased name, "|", the size in
/// bytes as a plain decimal number. Everything that produces keys calls this.
std::string fileKey(std::string_view name, std::int64_t size);

}  // namespace bildkurier
