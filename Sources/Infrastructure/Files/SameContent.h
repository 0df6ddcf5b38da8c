// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PlacedFile.h"
#include "Result.h"

#include <cstdint>
#include <functional>

namespace bildkurier {

/// Whether the card's file and the destination's, both on this computer and of `size` bytes when
/// they were listed, are equal, read past the page cache wherever the file system lets it. `step`
/// is told how many bytes more have been compared, and stops it by answering false: then, where
/// one cannot be read, and where one has another size by now, it fails.
/// Opens neither through a link nor in a folder that is not the one that was marked, and writes
/// nothing. Blocks.
Result<bool> haveSameContent(const PlacedFile& card, const PlacedFile& destination,
                             std::int64_t size, const std::function<bool(std::int64_t)>& step);

}  // namespace bildkurier
