// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PlacedFile.h"
#include "Result.h"

#include <cstdint>
#include <functional>

namespace bildkurier {

/// Whether both files of this computer have `size` bytes and all of them are equal, read past
/// the page cache wherever the file system lets it. `step` is told how many bytes more have been
/// compared, and stops it by answering false: then, and where one cannot be read, it fails.
/// Opens neither through a link, and writes nothing. Blocks.
Result<bool> haveSameContent(const PlacedFile& one, const PlacedFile& other, std::int64_t size,
                             const std::function<bool(std::int64_t)>& step);

}  // namespace bildkurier
