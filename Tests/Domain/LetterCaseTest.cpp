// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LetterCase.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unicode/errorcode.h>
#include <unicode/locid.h>

#include <algorithm>

namespace bildkurier {
namespace {

using namespace std::string_literals;

TEST(LetterCase, MapsTheWholeOfUnicode) {
    const struct {
        std::string text;
        std::string lower;
        std::string upper;
    } cases[] = {
        {"", "", ""},
        {"IMG_0412.Cr3", "img_0412.cr3", "IMG_0412.CR3"},
        {"@AZ[`az{", "@az[`az{", "@AZ[`AZ{"},
        {"Übergröße.JPG", "übergröße.jpg", "ÜBERGRÖSSE.JPG"},
        {"Ωμέγα", "ωμέγα", "ΩΜΈΓΑ"},
        {"ΟΔΟΣ", "οδος", "ΟΔΟΣ"},
        {"Ж", "ж", "Ж"},
        {"İ", "i\u0307", "İ"},
        {"ﬁ", "ﬁ", "FI"},
        {"𐐀", "𐐨", "𐐀"},
        {"日本.Mov", "日本.mov", "日本.MOV"},
        {"e\u0301É", "e\u0301é", "E\u0301É"},
    };
    for (const auto& [text, lower, upper] : cases) {
        EXPECT_EQ(lowerCased(text), lower) << text;
        EXPECT_EQ(upperCased(text), upper) << text;
    }
}

TEST(LetterCase, KeepsBytesThatAreNotValid) {
    const struct {
        std::string text;
        std::string lower;
    } cases[] = {
        {"\xFF", "\xFF"},
        {"A\xFF"
         "B",
         "a\xFF"
         "b"},
        {"Ä\xFFÖ", "ä\xFFö"},
        {"\xFF\xFEÄ\xFF\xFE", "\xFF\xFEä\xFF\xFE"},
        {"Ä\xE2\x82", "ä\xE2\x82"},
        {"\xE2\x82Ä", "\xE2\x82ä"},
        {"Ä\xC0\x80"
         "A",
         "ä\xC0\x80"
         "a"},
        {"\xED\xA0\x80Ä", "\xED\xA0\x80ä"},
        {"\xF4\x90\x80\x80Ä", "\xF4\x90\x80\x80ä"},
        {"Ä\uFFFDÖ", "ä\uFFFDö"},
        {"Ä\0Ö"s, "ä\0ö"s},
    };
    for (const auto& [text, lower] : cases) EXPECT_EQ(lowerCased(text), lower) << text;
    EXPECT_EQ(upperCased("ä\xFFö"), "Ä\xFFÖ");
}

TEST(LetterCase, IsTheSameInEveryLanguage) {
    const icu::Locale before = icu::Locale::getDefault();
    icu::ErrorCode status;
    icu::Locale::setDefault(icu::Locale("tr_TR"), status);
    EXPECT_EQ(lowerCased("IMG_Ä"), "img_ä");
    EXPECT_EQ(upperCased("tiff"), "TIFF");
    EXPECT_EQ(upperCased("tiffä"), "TIFFÄ");
    icu::Locale::setDefault(before, status);
    EXPECT_TRUE(status.isSuccess());
}

RC_GTEST_PROP(LetterCase, TouchesOnlyTheLettersBetweenInvalidBytes, ()) {
    const auto text = *rc::gen::container<std::string>(
        rc::gen::map(rc::gen::inRange(0, 0xC0), [](int byte) { return static_cast<char>(byte); }));
    std::string lower = text;
    std::ranges::transform(lower, lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    });
    RC_ASSERT(lowerCased(text) == lower);
    RC_ASSERT(upperCased(text) == upperCased(lower));
}

RC_GTEST_PROP(LetterCase, MapsPlainLettersAlikeWithAndWithoutOthersAround, ()) {
    const auto text = *rc::gen::container<std::string>(rc::gen::inRange('\0', '\x7F'));
    RC_ASSERT(lowerCased(text + "Ä") == lowerCased(text) + "ä");
    RC_ASSERT(upperCased(text + "ä") == upperCased(text) + "Ä");
}

}  // namespace
}  // namespace bildkurier
