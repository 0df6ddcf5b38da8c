// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderMark.h"
#include "Url.h"

#include <optional>
#include <string>

namespace bildkurier {

/// A file by the folder that was asked for and its path below that: whoever opens it goes down
/// from the folder, and through no link.
struct PlacedFile {
    Url folder;
    std::string path;                ///< relative
    std::optional<FolderMark> mark;  ///< that the folder must bear, if it is known

    bool operator==(const PlacedFile&) const = default;
};

}  // namespace bildkurier
