// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFileType.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

using enum CardFileType;

TEST(CardFileType, KnowsWhatTheCamerasWrite) {
    const struct {
        CardFileType type;
        std::vector<std::string> extensions;
    } cases[] = {
        {Photo,
         {"JPG", "JPEG", "HEIC", "HEIF", "HIF", "AVIF", "TIF", "TIFF", "PNG", "MPO", "INSP"}},
        {Photo, {"3FR", "ARW", "CR2", "CR3", "CRW", "DCR", "DNG", "ERF", "FFF", "GPR",
                 "IIQ", "K25", "KDC", "MEF", "MOS", "MRW", "NEF", "NRW", "ORF", "PEF",
                 "PTX", "RAF", "RAW", "RW2", "RWL", "SR2", "SRF", "SRW", "X3F"}},
        {Video,
         {"MP4", "MOV", "AVI", "MTS", "M2TS", "MXF", "CRM", "INSV", "3GP", "3G2", "MPG", "MOD",
          "TOD", "R3D", "BRAW", "NEV", "360", "WEBM", "MKV"}},
        {VideoProxy, {"LRV", "LRF"}},
        {Sound, {"MP3", "M4A", "AAC", "FLAC", "OGG", "AIFF", "AMR"}},
        {VoiceNote, {"WAV"}},
        {Sidecar, {"XMP", "THM", "XML", "AAE", "SRT"}},
        {Other, {"CTG", "MIF", "BDM", "CPI",  "IND", "MPL", "BNP", "INT", "CTR", "DAT", "SAV",
                 "TXT", "PDF", "EXE", "HTML", "ZIP", "TDT", "TID", "MOI", "ONT", "jpg2"}},
    };
    for (const auto& [type, extensions] : cases) {
        for (const std::string& extension : extensions)
            EXPECT_EQ(cardFileType("DSC_0001." + extension), type) << extension;
    }
}

TEST(CardFileType, IgnoresTheCaseOfTheExtension) {
    EXPECT_EQ(cardFileType("a.jpg"), Photo);
    EXPECT_EQ(cardFileType("a.Mp4"), Video);
    EXPECT_EQ(cardFileType("a.wAV"), VoiceNote);
}

TEST(CardFileType, GoesByTheLastExtensionOnly) {
    EXPECT_EQ(cardFileType("a.jpg.txt"), Other);
    EXPECT_EQ(cardFileType("a.CR3.xmp"), Sidecar);
    EXPECT_EQ(cardFileType("JPG"), Other);
    EXPECT_EQ(cardFileType("a."), Other);
    EXPECT_EQ(cardFileType(""), Other);
    EXPECT_EQ(cardFileType("\xFF\xFE.jpg"), Photo);
    EXPECT_EQ(cardFileType("a.\xFF"), Other);
}

}  // namespace
}  // namespace bildkurier
