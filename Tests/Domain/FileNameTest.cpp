// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileName.h"
#include "UntrustedText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <vector>

namespace bildkurier {
namespace {

using namespace std::string_literals;

bool hasControlCharacter(const icu::UnicodeString& text) {
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        if (u_charType(text.char32At(i)) == U_CONTROL_CHAR) return true;
    }
    return false;
}

/// `text` in which ICU has replaced every byte that is not valid UTF-8.
std::string repaired(const std::string& text) {
    std::string result;
    return icu::UnicodeString::fromUTF8(text).toUTF8String(result);
}

TEST(NameParts, AreSplitAtTheLastDot) {
    const struct {
        std::string name;
        std::string base;
        std::string extension;
    } cases[] = {
        {"IMG_1.JPG", "IMG_1", "JPG"},
        {"a.b.cr3", "a.b", "cr3"},
        {"clip", "clip", ""},
        {"x.", "x.", ""},
        {"a.jpg.", "a.jpg.", ""},
        {".bashrc", "", "bashrc"},
        {"..jpg", ".", "jpg"},
        {".", ".", ""},
        {"..", "..", ""},
        {"", "", ""},
        {"DCIM/A.JPG", "A", "JPG"},
        {"a.b/clip", "clip", ""},
        {"a.b/", "a", "b"},
        {"/", "/", ""},
        {"\xC4.\xD6", "\xC4", "\xD6"},
    };
    for (const auto& [name, base, extension] : cases) {
        EXPECT_EQ(nameParts(name).base, base) << name;
        EXPECT_EQ(nameParts(name).extension, extension) << name;
    }
}

RC_GTEST_PROP(NameParts, MakeUpTheLastPathComponent, ()) {
    const auto name = *untrustedText();
    const auto [base, extension] = nameParts(name);
    const std::string dot = extension.empty() ? "" : ".";
    RC_ASSERT(std::string(base) + dot + std::string(extension) == lastPathComponent(name));
    RC_ASSERT(!extension.contains('.'));
    RC_ASSERT(!extension.contains('/'));
}

TEST(IsPlainFileName, AcceptsWhatIsOnePathComponent) {
    for (const auto& name : {"IMG_1.JPG"s, "clip"s, " "s, ".x"s, "..."s, "a\\b"s, "Ärger 日本"s,
                             "\xFF\xC4"s, "\x85"s, "\u00A0"s, std::string(255, 'a')}) {
        EXPECT_TRUE(isPlainFileName(name)) << name;
    }
}

TEST(IsPlainFileName, RejectsWhatIsNot) {
    for (const auto& name :
         {""s, "."s, ".."s, "/"s, "a/b"s, "../a"s, "a/"s, "a\0b"s, "\0"s, "a\nb"s, "\x1F"s, "\x7F"s,
          "\u0080"s, "a\u0085"s, "\u009Fa"s, "\xE2\u0085"s, std::string(256, 'a')}) {
        EXPECT_FALSE(isPlainFileName(name)) << name;
    }
}

TEST(IsPlainFileName, CountsBytesRatherThanCharacters) {
    std::string name;
    for (int i = 0; i < 127; ++i) name += "ä";
    EXPECT_TRUE(isPlainFileName(name + "b"));
    EXPECT_FALSE(isPlainFileName(name + "bc"));
}

RC_GTEST_PROP(IsPlainFileName, KnowsEveryControlCharacter, ()) {
    const auto name = *untrustedText();
    const bool oneComponent =
        !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
    const bool expected = oneComponent && name.size() <= 255 &&
                          !hasControlCharacter(icu::UnicodeString::fromUTF8(name));
    RC_ASSERT(isPlainFileName(name) == expected);
}

TEST(DisplayText, ShowsWhatCannotBeSeen) {
    const struct {
        std::string text;
        std::string shown;
    } cases[] = {
        {"", ""},
        {"Ärger 日本 𐐀.JPG", "Ärger 日本 𐐀.JPG"},
        {"a\nb", "a␊b"},
        {"\0"s, "␀"},
        {"\x1B[31m", "␛[31m"},
        {"\x1F \x7F", "␟ ␡"},
        {"a\u0080\u0085\u009F\u00A0", "a\uFFFD\uFFFD\uFFFD\u00A0"},
        {"\xC4rger", "\uFFFDrger"},
        {"a\xE2\x82", "a\uFFFD"},
        {"\x80", "\uFFFD"},
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        // directions, separators, no width, shy hyphens, tags, no character at all
        {"IMG_\u202Egpj.exe", "IMG_\uFFFDgpj.exe"},
        {"\u061C\u200E\u200F\u2066\u2069", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"a\u2028b\u2029c", "a\uFFFDb\uFFFDc"},
        {"a\u200Bb\u2060c\uFEFFd", "a\uFFFDb\uFFFDc\uFFFDd"},
        {"a\u00ADb", "a\uFFFDb"},
        {"\U000E0041", "\uFFFD"},
        {"\uFFFE\uFFFF\U0010FFFF\u0378", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        // joiners, accents, other blanks and private characters remain
        {"👨\u200D👩\u200D👧 می\u200Cخواهم", "👨\u200D👩\u200D👧 می\u200Cخواهم"},
        {"A\u0308\u00A0\u3000\uE000\uFE0F", "A\u0308\u00A0\u3000\uE000\uFE0F"},
    };
    for (const auto& [text, shown] : cases) EXPECT_EQ(displayText(text), shown);
}

RC_GTEST_PROP(DisplayText, IsValidAndWithoutControlCharacters, ()) {
    const auto shown = displayText(*untrustedText());
    RC_ASSERT(repaired(shown) == shown);
    RC_ASSERT(!hasControlCharacter(icu::UnicodeString::fromUTF8(shown)));
    RC_ASSERT(displayText(shown) == shown);
}

RC_GTEST_PROP(DisplayText, LeavesTheRestAlone, ()) {
    std::string text;
    for (const auto& character :
         *rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
             " ", "a", "~", "/", "\u00A0", "ä", "日", "\uFFFD", "𐐀"))) {
        text += character;
    }
    RC_ASSERT(displayText(text) == text);
}

}  // namespace
}  // namespace bildkurier
