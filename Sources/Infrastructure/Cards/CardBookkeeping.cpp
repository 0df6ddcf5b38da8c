// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardBookkeeping.h"

#include "FileName.h"
#include "LetterCase.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace bildkurier {

namespace {

/// Of cameras: indexes, play lists, thumbnails and positions of films, print orders.
constexpr std::string_view indexExtensions[] = {"bdm", "bnp", "cpi", "ctg", "ctr", "ind",
                                                "inp", "int", "mif", "moi", "mpl", "mrk",
                                                "ont", "sav", "tdt", "tid"};

constexpr std::string_view keptNames[] = {
    // of cameras
    "cueup.xml", "database.bin", "discmeta.xml", "mediapro.xml", "nc_fllst.dat", "ncfllst.dat",
    "nikon001.dsc", "prv00001.bin", "status.bin", "version.txt",
    // of Windows
    "desktop.ini", "indexervolumeguid", "thumbs.db", "wpsettings.dat",
    // of macOS
    ".apdisk", ".documentrevisions-v100", ".ds_store", ".fseventsd", ".metadata_never_index",
    ".spotlight-v100", ".temporaryitems", ".volumeicon.icns",
    // of Linux and Android
    ".directory", ".nomedia", ".thumbnails"};

/// A Mac's twins of every file, and bins.
constexpr std::string_view keptBeginnings[] = {"._", ".trash"};

}  // namespace

bool isBookkeeping(std::string_view name) {
    const std::string lower = lowerCased(name);
    const auto begins = [&lower](std::string_view beginning) {
        return lower.starts_with(beginning);
    };
    return std::ranges::find(indexExtensions, nameParts(lower).extension) !=
               std::end(indexExtensions) ||
           std::ranges::find(keptNames, lower) != std::end(keptNames) ||
           std::ranges::any_of(keptBeginnings, begins);
}

}  // namespace bildkurier
