// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardCatalogue.h"
#include "LetterCase.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <set>

namespace bildkurier {
namespace {

using Names = std::vector<std::string>;

CardListing listing(const std::map<std::string, Names>& folders) {
    CardListing all;
    for (const auto& [folder, names] : folders) {
        for (const std::string& name : names) {
            CardEntry& entry = all[folder].emplace_back();
            entry.name = name;
            entry.type = cardFileType(name);
        }
    }
    return all;
}

/// The paths in order, those of sidecars behind a "+".
Names arranged(const std::map<std::string, Names>& folders) {
    const CardCatalogue catalogue = arrangeCatalogue(listing(folders));
    Names lines;
    std::uint32_t sidecars = 0;
    for (const CardEntry& entry : catalogue.entries) {
        lines.push_back((sidecars > 0 ? "+" : "") + catalogue.path(entry));
        if (sidecars > 0) {
            EXPECT_EQ(entry.sidecars, 0U);
            --sidecars;
        } else {
            sidecars = entry.sidecars;
        }
    }
    EXPECT_EQ(sidecars, 0U);
    return lines;
}

Names arranged(const Names& names) { return arranged({{"", names}}); }

TEST(CardCatalogue, IsOrderedByFolderAndNameByteByByte) {
    EXPECT_EQ(
        arranged({{"DCIM/100", {"b.jpg", "B.jpg", "\xC3\xA4.jpg", "a.jpg", "Z.MP4"}},
                  {"DCIM/100-1", {"1.jpg"}},
                  {"DCIM", {"z.jpg"}},
                  {"", {"x.WAV"}},
                  {"A", {"\xFF.jpg"}}}),
        (Names{"x.WAV", "A/\xFF.jpg", "DCIM/z.jpg", "DCIM/100/B.jpg", "DCIM/100/Z.MP4",
               "DCIM/100/a.jpg", "DCIM/100/b.jpg", "DCIM/100/\xC3\xA4.jpg", "DCIM/100-1/1.jpg"}));
}

TEST(CardCatalogue, PutsSidecarsBehindTheFileTheyBelongTo) {
    const struct {
        Names found, arranged;
    } cases[] = {
        {{"A.JPG", "A.XMP", "B.JPG"}, {"A.JPG", "+A.XMP", "B.JPG"}},
        {{"img.JPG", "IMG.xmp"}, {"img.JPG", "+IMG.xmp"}},
        {{"\xC3\xA4.JPG", "\xC3\x84.XMP"}, {"\xC3\xA4.JPG", "+\xC3\x84.XMP"}},
        {{"A.CR3", "A.JPG", "A.XMP", "A.AAE"}, {"A.CR3", "+A.AAE", "+A.XMP", "A.JPG"}},
        {{"A.CR3", "A.JPG", "A.JPG.xmp", "A.CR3.XMP"},
         {"A.CR3", "+A.CR3.XMP", "A.JPG", "+A.JPG.xmp"}},
        {{"A.JPG", "a.jpg.XMP"}, {"A.JPG", "+a.jpg.XMP"}},
        {{"A.MOV", "A.THM", "A.SRT", "A.XML"}, {"A.MOV", "+A.SRT", "+A.THM", "+A.XML"}},
        // voice notes, or sounds in their own right
        {{"A.JPG", "A.WAV"}, {"A.JPG", "+A.WAV"}},
        {{"A.MP4", "A.WAV"}, {"A.MP4", "+A.WAV"}},
        {{"A.WAV"}, {"A.WAV"}},
        {{"A.WAV", "A.XMP"}, {"A.WAV", "+A.XMP"}},
        {{"A.MP3", "A.WAV"}, {"A.MP3", "A.WAV"}},
        {{"A.FLAC", "A.JPG", "A.WAV"}, {"A.FLAC", "A.JPG", "+A.WAV"}},
        // small copies of videos, or videos in their own right
        {{"A.LRV", "A.MP4", "A.THM", "A.WAV"}, {"A.MP4", "+A.LRV", "+A.THM", "+A.WAV"}},
        {{"A.LRV", "A.THM", "A.WAV"}, {"A.LRV", "+A.THM", "+A.WAV"}},
        {{"A.JPG", "A.LRV", "A.MP4"}, {"A.JPG", "A.MP4", "+A.LRV"}},
        {{"A.JPG", "A.LRV"}, {"A.JPG", "A.LRV"}},
        // sidecars of what belongs to another file itself
        {{"A.JPG", "A.WAV", "A.WAV.XMP"}, {"A.JPG", "+A.WAV", "+A.WAV.XMP"}},
        {{"A.LRV", "A.LRV.XMP", "A.MP4"}, {"A.MP4", "+A.LRV", "+A.LRV.XMP"}},
        {{"A.WAV", "A.WAV.XMP"}, {"A.WAV", "+A.WAV.XMP"}},
        // clips
        {{"C0001.MP4", "C0001M01.XML"}, {"C0001.MP4", "+C0001M01.XML"}},
        {{"c0001.mp4", "C0001m02.xml"}, {"c0001.mp4", "+C0001m02.xml"}},
        {{"C0001.MP4", "C0001M01.XMP"}, {"C0001.MP4"}},
        {{"C0001.MP4", "C0001M0.XML", "C0001N01.XML", "C0001M0A.XML"}, {"C0001.MP4"}},
        {{"C0001.MP4", "C0001M01.MP4", "C0001M01.XML"},
         {"C0001.MP4", "C0001M01.MP4", "+C0001M01.XML"}},
        // nothing to belong to
        {{"A.XMP", "B.THM", "M01.XML", "C.XML"}, {}},
        {{"A.JPG", "AB.XMP", "A.B.XMP"}, {"A.JPG"}},
        {{"A.TXT", "A.XMP"}, {}},
        {{"A.XMP", "A.THM"}, {}},
    };
    for (const auto& [found, wanted] : cases) {
        EXPECT_EQ(arranged(found), wanted);
        EXPECT_EQ(arranged(Names(found.rbegin(), found.rend())), wanted);
    }
}

TEST(CardCatalogue, PairsOnlyWithinOneFolder) {
    EXPECT_EQ(arranged({{"A", {"1.JPG"}}, {"B", {"1.XMP", "1.WAV"}}, {"C", {"1.XMP"}}}),
              (Names{"A/1.JPG", "B/1.WAV", "+B/1.XMP"}));
}

TEST(CardCatalogue, LeavesOutWhatNobodyWants) {
    EXPECT_EQ(arranged({{"CANONMSC", {"M0100.CTG"}},
                        {"PRIVATE/AVCHD/BDMV", {"INDEX.BDM", "MOVIEOBJ.BDM"}},
                        {"PRIVATE/AVCHD/BDMV/STREAM", {"00001.MTS", "00001.CPI"}}}),
              (Names{"PRIVATE/AVCHD/BDMV/STREAM/00001.MTS"}));
}

TEST(CardCatalogue, CountsWhatItLeavesOut) {
    const struct {
        std::map<std::string, Names> found;
        OtherFiles others;
    } cases[] = {
        {{}, {}},
        {{{"", {"A.JPG", "A.XMP", "B.WAV", "C.LRV"}}}, {}},
        {{{"", {"A.JPG", "A.CR4", "B.cr4"}}, {"D", {"C.Cr4", "a.pdf"}}},
         {.kinds = {{"CR4", 3}, {"PDF", 1}}, .hidden = {}}},
        {{{"", {"LIESMICH", "Ende."}}}, {.kinds = {{"", 2}}, .hidden = {}}},
        // sidecars of nothing
        {{{"", {"A.JPG", "B.XMP", "B.THM"}}, {"D", {"A.xmp"}}},
         {.kinds = {{"THM", 1}, {"XMP", 2}}, .hidden = {}}},
        // a sidecar is no main file, and neither is what is of another kind
        {{{"", {"A.CR4", "A.XMP", "A.WAV.XMP"}}},
         {.kinds = {{"CR4", 1}, {"XMP", 2}}, .hidden = {}}},
        {{{"", {".alt", ".A.CR4"}}, {"D", {".alt"}}},
         {.kinds = {}, .hidden = {{".A.CR4", 1}, {".alt", 2}}}},
        // what nobody would miss
        {{{"CANONMSC", {"M0100.CTG", "._A.JPG", ".DS_Store"}}, {"M4ROOT", {"MEDIAPRO.XML"}}}, {}},
    };
    for (const auto& [found, others] : cases) {
        CardListing all = listing(found);
        for (auto& [folder, files] : all)
            for (CardEntry& file : files)
                if (file.name.starts_with('.')) file.type = CardFileType::Other;
        const OtherFiles counted = arrangeCatalogue(std::move(all)).others;
        EXPECT_EQ(counted, others) << testing::PrintToString(found);
    }
}

TEST(CardCatalogue, KeepsAFolderThatCouldNotBeReadApart) {
    CardListing found = listing({{"DCIM", {"100.XMP", "A.WAV", "ZZ.XMP"}}});
    for (const char* name : {"100", "A", "ZZ.JPG"}) {
        CardEntry& folder = found["DCIM"].emplace_back();
        folder.name = name;
        folder.error = EACCES;
    }
    const CardCatalogue catalogue = arrangeCatalogue(std::move(found));
    Names names;
    for (const CardEntry& entry : catalogue.entries) {
        names.push_back(entry.name);
        EXPECT_EQ(entry.sidecars, 0U);
    }
    EXPECT_EQ(names, (Names{"100", "A", "A.WAV", "ZZ.JPG"}));
    EXPECT_EQ(catalogue.others, (OtherFiles{.kinds = {{"XMP", 2}}, .hidden = {}}));
}

TEST(CardCatalogue, NeitherLosesNorDoublesAMediaFile) {
    const bool holds = rc::check([] {
        const auto name = rc::gen::apply(
            [](const std::string& base, const std::string& extension) {
                return base + "." + extension;
            },
            rc::gen::element<std::string>("A", "a", "B", "A.JPG", "A.WAV", "AM01", "C"),
            rc::gen::element<std::string>("JPG", "CR3", "MP4", "LRV", "WAV", "MP3", "XMP", "XML",
                                          "THM", "CR4"));
        const auto found = *rc::gen::container<std::set<std::string>>(name);
        const Names all = arranged(Names(found.begin(), found.end()));
        const auto others = arrangeCatalogue(listing({{"", {found.begin(), found.end()}}})).others;
        RC_ASSERT(all.size() + static_cast<std::size_t>(others.count()) == found.size());
        std::set<std::string> listed;
        for (const std::string& line : all)
            RC_ASSERT(listed.insert(line.starts_with('+') ? line.substr(1) : line).second);
        for (const std::string& each : found) {
            const CardFileType type = cardFileType(each);
            if (type == CardFileType::Other) RC_ASSERT(!listed.contains(each));
            if (type != CardFileType::Other && type != CardFileType::Sidecar)
                RC_ASSERT(listed.contains(each));
            const std::string named = lowerCased(each.substr(0, each.rfind('.')));
            const bool namesAFile = std::ranges::any_of(found, [&](const std::string& other) {
                const CardFileType of = cardFileType(other);
                return of != CardFileType::Other && of != CardFileType::Sidecar &&
                       lowerCased(other) == named;
            });
            if (type == CardFileType::Sidecar && namesAFile) RC_ASSERT(listed.contains(each));
        }
    });
    EXPECT_TRUE(holds);
}

}  // namespace
}  // namespace bildkurier
