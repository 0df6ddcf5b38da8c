// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "Url.h"

#include <optional>
#include <string>
#include <string_view>

namespace bildkurier {

/// How imported files are sorted into sub-folders of the destination.
struct FolderLayout {
    bool byDate = false;  ///< a folder per shot day, "yyyy-MM-dd"
    bool byType = false;  ///< a folder per file type, inside the day folder if there is one

    /// The folder for one file below `destination`. `shot` is its shot date, or now when it
    /// has none.
    Url folder(const Url& destination, Date shot, std::optional<std::string_view> name) const;

    bool operator==(const FolderLayout&) const = default;
};

/// The type folder of a file: its upper-cased extension, "JPG" for JPEG, "Sonstige" without
/// extension or name.
std::string typeFolder(std::optional<std::string_view> name);

}  // namespace bildkurier
