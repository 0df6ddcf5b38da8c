// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileKey.h"

#include <gtest/gtest.h>

#include <limits>

namespace bildkurier {
namespace {

TEST(FileKey, IsTheLowerCasedNameABarAndTheSize) {
    const struct {
        std::string name;
        std::int64_t size;
        std::string key;
    } cases[] = {
        {"IMG_0412.CR3", 25'431'104, "img_0412.cr3|25431104"},
        {"clip", 0, "clip|0"},
        {"ÄRGER.JPG", 1000, "ärger.jpg|1000"},
        {"A|B.JPG", 7, "a|b.jpg|7"},
        {"", 1, "|1"},
        {"\xC4"
         "RGER.JPG",
         1,
         "\xC4"
         "rger.jpg|1"},
        {"a", std::numeric_limits<std::int64_t>::max(), "a|9223372036854775807"},
    };
    for (const auto& [name, size, key] : cases) EXPECT_EQ(fileKey(name, size), key);
}

TEST(FileKey, TellsSizesApartButNotLetterCase) {
    EXPECT_EQ(fileKey("IMG_1.JPG", 100), fileKey("img_1.jpg", 100));
    EXPECT_NE(fileKey("IMG_1.JPG", 100), fileKey("IMG_1.JPG", 101));
}

}  // namespace
}  // namespace bildkurier
