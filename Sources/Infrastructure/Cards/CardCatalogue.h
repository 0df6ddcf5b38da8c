// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardFileType.h"
#include "Date.h"
#include "OtherFiles.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// A file found on a card, or a file or folder that could not be read.
struct CardEntry {
    std::string name;  ///< the bytes of the file system
    std::int64_t size = 0;
    /// Wall clock of the camera, as local time; for what could not be read the time of the
    /// attempt, so that no choice by date leaves it out.
    std::optional<Date> modified;
    std::optional<Date> taken;  ///< from the metadata, in the same clock
    CardFileType type = CardFileType::Other;
    int error = 0;               ///< errno of what could not be read, else 0
    std::uint32_t folder = 0;    ///< index into `CardCatalogue::folders`
    std::uint32_t sidecars = 0;  ///< how many of the entries behind it are its sidecars
};

/// What was found on a card: the path of each folder below the card's root, and what is in it,
/// hidden things as `CardFileType::Other`.
using CardListing = std::map<std::string, std::vector<CardEntry>, std::less<>>;

/// The media files on a card, by folder and name in the order of their bytes, each with its
/// sidecars right behind it.
struct CardCatalogue {
    std::vector<std::string> folders;  ///< below the card's root; empty for the root itself
    std::vector<CardEntry> entries;
    OtherFiles others;  ///< what was left out, but bookkeeping

    /// Below the card's root.
    std::string path(const CardEntry& entry) const;
};

/// Orders what was found: sidecars go behind the first file of their folder and base name that
/// they can belong to ("IMG_1.XMP", "IMG_1.CR3.xmp", "C0001M01.XML"), or behind the one to which
/// that belongs itself ("IMG_1.WAV.xmp"); those that belong to none, and all that is neither
/// media nor sidecar, are left out and counted.
CardCatalogue arrangeCatalogue(CardListing listing);

/// Whether two looks at a card have found the same: the same files, with the same sizes and times
/// of their last change, and nothing else.
bool haveSameFiles(const CardCatalogue& one, const CardCatalogue& other);

/// Gives sidecars the date of their main file, so that they go to the same day.
void dateSidecars(CardCatalogue& catalogue);

}  // namespace bildkurier
