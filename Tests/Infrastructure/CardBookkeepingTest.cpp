// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardBookkeeping.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(CardBookkeeping, IsWhatNobodyWouldMiss) {
    for (const char* name :
         {"M0100.CTG",       "INDEX.BDM",         "00001.CPI",    "00000.MPL",  "SONYCARD.IND",
          "AVIN0001.BNP",    "AVIN0001.INP",      "AVIN0001.INT", "MOV001.MOI", "AUTPRINT.MRK",
          "index.ctg",       "leinfo.sav",        "MEDIAPRO.XML", "STATUS.BIN", "NC_FLLST.DAT",
          "WPSettings.dat",  "IndexerVolumeGuid", "desktop.ini",  "Thumbs.db",  ".DS_Store",
          ".Spotlight-V100", ".fseventsd",        "._IMG_1.JPG",  ".Trashes",   ".Trash-1000",
          ".thumbnails",     ".nomedia"})
        EXPECT_TRUE(isBookkeeping(name)) << name;
}

TEST(CardBookkeeping, IsNothingElse) {
    for (const char* name :
         {"IMG_1.CR4", "IMG_1.XMP", "CLIP.XML", "FILM.BIN", "AVSEQ01.DAT", "LIESMICH.TXT", "CTG",
          "BDM", ".alt", ".IMG_1.JPG", "Trashes", "_IMG_1.JPG", "x.DS_Store", "\xFF", ""})
        EXPECT_FALSE(isBookkeeping(name)) << name;
}

}  // namespace
}  // namespace bildkurier
