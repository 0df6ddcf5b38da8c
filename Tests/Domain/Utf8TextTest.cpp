// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Utf8Text.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

TEST(IsUtf8, KnowsWhatIsNot) {
    for (const std::string text : {"", "a", "Übung", "📷", "a\nb"})
        EXPECT_TRUE(isUtf8(text)) << text;
    for (const std::string text : {"\xFF", "a\xC0", "\xC3", "\xED\xA0\x80", "\xC0\xAF", "\x80"})
        EXPECT_FALSE(isUtf8(text)) << text;
}

TEST(Trimmed, TakesWhiteSpaceOffBothEnds) {
    const struct {
        std::string text;
        std::string rest;
    } cases[] = {
        {"", ""},
        {"word", "word"},
        {"  word\n\n", "word"},
        {"\r\n\t\v\f a  b \n", "a  b"},
        {" \n\t", ""},
        {"\u00A0\u2003Übung\u2028\u3000\u0085", "Übung"},
        {"\u200Bword", "\u200Bword"},
    };
    for (const auto& [text, rest] : cases) EXPECT_EQ(trimmed(text), rest) << text;
}

}  // namespace
}  // namespace bildkurier
