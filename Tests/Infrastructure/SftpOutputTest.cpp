// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpOutput.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

TEST(ListingLine, HasNineFields) {
    const struct {
        std::string line;
        std::string path;  ///< empty when it is none
    } cases[] = {
        {"-rw-r--r-- 1 0 0 5 May 9 10:00 x", "x"},
        {"  -rw-r--r--    ?   0 0  5 May   9 10:00 /a/x  y ", "/a/x  y "},
        {"-rw-r--r-- 1 0 0 5 May 9 10:00  x", " x"},
        {"drwxr-xr-x 1 0 0 5 May 9 10:00 x", "x"},
        {"lrwxrwxrwx 1 0 0 5 May 9 10:00 x", "x"},
        {"-rw-r--r-- 1 0 0 5 May 9 10:00", ""},
        {"-rw-r--r-- 1 0 0 5 May 9 10:00 ", ""},
        {"crw-r--r-- 1 0 0 5 May 9 10:00 x", ""},
        {"-rw-r--r- 1 0 0 5 May 9 10:00 x", ""},
        {"-rw-r--r--+ 1 0 0 5 May 9 10:00 x", ""},
        {"-rw-r--r-- 1 0 0 5k May 9 10:00 x", ""},
        {"-rw-r--r-- 1 0 0 0x5 May 9 10:00 x", ""},
        {"-rw-r--r-- 1 0 0 9223372036854775807 May 9 10:00 x", "x"},
        {"-rw-r--r-- 1 0 0 9223372036854775808 May 9 10:00 x", ""},
        {"-rw-r--r-- 1 0 0 -5 May 9 10:00 x", ""},
        {"Can't ls: \"/a b c d e f g\" not found", ""},
        {"", ""},
        {"          ", ""},
    };
    for (const auto& [line, path] : cases) {
        const auto entry = listingLine(line);
        EXPECT_EQ(entry ? entry->path : "", path) << line;
    }
}

TEST(ListingLine, MayNameOwnersAndGroupsWithBlanks) {
    const struct {
        std::string line;
        std::string path;  ///< empty when it is none
        std::int64_t size;
    } cases[] = {
        {"-rw-r--r--    ? anna     domain users        7 Nov 21 18:16 /p/a b", "/p/a b", 7},
        {"-rw-r--r--    ? Anna Muster 1000        7 Nov 21  2024 /p/x", "/p/x", 7},
        {"-rw-r--r--    ? a b c    d  e  f        7 Dec  1 00:00 /p/ x", "/p/ x", 7},
        {"-rw-r--r-- 1 a b 7 May 9 10:00 8 Jun 1 11:00 x", "8 Jun 1 11:00 x", 7},
        {"-rw-r--r-- 1 a b c 7 May 9 10:00 8 Jun 1 11:00 x", "8 Jun 1 11:00 x", 7},
        {"-rw-r--r-- 1 a b c 7k May 9 10:00 8 Jun 1 11:00 x", "", 0},
        {"-rw-r--r-- 1 a b c -7 May 9 10:00 x", "", 0},
        {"-rw-r--r-- 1 a b c 7 May 9 10:00 ", "", 0},
        {"-rw-r--r-- 1 a b c 7 May 9", "", 0},
        {"-rw-r--r-- 1 a b c 7 may 9 10:00 x", "", 0},
        {"-rw-r--r-- 1 a b c 7 May IX 10:00 x", "", 0},
        {"-rw-r--r-- 1 a b c 7 May 9 noon x", "", 0},
        {"-rw-r--r-- 1 a b 7 2024 05 09 x y", "x y", 7},
    };
    for (const auto& [line, path, size] : cases) {
        const auto entry = listingLine(line);
        EXPECT_EQ(entry ? entry->path : "", path) << line;
        EXPECT_EQ(entry ? entry->size : 0, size) << line;
    }
}

TEST(ListingLine, TellsFoldersFromFiles) {
    const auto entry = listingLine("drwxr-xr-x 1 0 0 4096 May 9 10:00 /a");
    ASSERT_TRUE(entry);
    EXPECT_TRUE(entry->isDirectory);
    EXPECT_EQ(entry->size, 4096);
    EXPECT_FALSE(listingLine("lrwxrwxrwx 1 0 0 4096 May 9 10:00 /a")->isDirectory);
}

TEST(FreeBytes, AreInTheThirdColumnOfTheLastLineWithNumbers) {
    const struct {
        std::string output;
        std::optional<std::int64_t> bytes;
    } cases[] = {
        {"Size Used Avail (root) %Capacity\n100 60 40 45 60%", 40960},
        {"1 2 3\n4 5 6\nnote at the end", 6144},
        {"1 2 3", 3072},
        {"1 2", {}},
        {"", {}},
        {"Size Used Avail", {}},
        {"remote statvfs(\"/a\"): Operation unsupported", {}},
        {"1 2 9007199254740991", 9223372036854774784},
        {"1 2 9007199254740992", {}},
        {"1 2 99999999999999999999", {}},
        {"1 2 -3", {}},
        {"1 2 0", 0},
    };
    for (const auto& [output, bytes] : cases) EXPECT_EQ(freeBytes(output), bytes) << output;
}

TEST(WithoutEscapes, GivesBackBytesThatTheClientCannotPrint) {
    const struct {
        std::string text;
        std::string bytes;
    } cases[] = {
        {"", ""},
        {"a b", "a b"},
        {"\\303\\234bung", "Übung"},
        {"\\377\\300", "\xFF\xC0"},
        {"\\001\\177", "\\001\\177"},
        {"\\30", "\\30"},
        {"\\38x", "\\38x"},
        {"\\", "\\"},
    };
    for (const auto& [text, bytes] : cases) EXPECT_EQ(withoutEscapes(text), bytes) << text;
}

}  // namespace
}  // namespace bildkurier
