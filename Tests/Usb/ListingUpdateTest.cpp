// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingUpdate.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdint>

namespace bildkurier {
namespace {

CardEntry file(std::string name, std::int64_t size, int second = 0) {
    return {.name = std::move(name),
            .size = size,
            .modified = Date(std::chrono::seconds(second)),
            .type = CardFileType::Photo};
}

CardEntry unreadFile(std::string name) {
    return {.name = std::move(name), .type = CardFileType::Photo, .error = EIO};
}

CardEntry unreadFolder(std::string name) { return {.name = std::move(name), .error = EIO}; }

/// Each file with its size, or that it could not be read.
std::string shown(const CardListing& listing) {
    std::string text;
    for (const auto& [folder, entries] : listing) {
        for (const CardEntry& entry : entries) {
            text += folder + "/" + entry.name;
            text += entry.error != 0 ? "! " : "=" + std::to_string(entry.size) + " ";
        }
    }
    return text;
}

TEST(ListingUpdate, AddsAndPutsRight) {
    const struct {
        CardEntry known;
        CardEntry found;
        std::string expected;
        bool changes;
    } cases[] = {
        {file("A.JPG", 1), file("B.JPG", 2), "D/A.JPG=1 D/B.JPG=2 ", true},
        {file("A.JPG", 1), file("A.JPG", 1), "D/A.JPG=1 ", false},
        {file("A.JPG", 1), file("A.JPG", 2), "D/A.JPG=2 ", true},
        {file("A.JPG", 1), file("A.JPG", 1, 5), "D/A.JPG=1 ", true},
        {file("A.JPG", 1), unreadFile("A.JPG"), "D/A.JPG=1 ", false},
        {unreadFile("A.JPG"), file("A.JPG", 2), "D/A.JPG=2 ", true},
        {unreadFile("A.JPG"), unreadFile("A.JPG"), "D/A.JPG! ", false},
        {file("A.JPG", 1), unreadFolder("100"), "D/A.JPG=1 D/100! ", true},
    };
    for (const auto& [known, found, expected, changes] : cases) {
        CardListing listing{{"D", {known}}};
        EXPECT_EQ(updateListing(listing, {{"D", {found}}}), changes) << expected;
        EXPECT_EQ(shown(listing), expected);
    }
}

TEST(ListingUpdate, KeepsTheTimeOfTheLastTelling) {
    CardListing listing{{"D", {file("A.JPG", 1)}}};
    updateListing(listing, {{"D", {file("A.JPG", 1, 5)}}});
    EXPECT_EQ(listing.at("D").at(0).modified, Date(std::chrono::seconds(5)));
}

TEST(ListingUpdate, AddsFoldersAndRemovesNothing) {
    CardListing listing{{"D/100", {file("A.JPG", 1)}}};
    EXPECT_TRUE(updateListing(listing, {{"D/101", {file("A.JPG", 2)}}}));
    EXPECT_EQ(shown(listing), "D/100/A.JPG=1 D/101/A.JPG=2 ");
}

TEST(ListingUpdate, DropsFoldersThatWereReadInTheEnd) {
    const CardListing before{{"", {unreadFolder("CARD")}},
                             {"CARD/DCIM", {unreadFolder("100"), unreadFile("A.JPG")}}};
    const struct {
        CardListing found;
        std::string left;
    } cases[] = {
        {{}, "CARD/DCIM/A.JPG! "},
        {{{"CARD/DCIM", {unreadFolder("101")}}}, "CARD/DCIM/A.JPG! "},
        {{{"CARD/DCIM", {unreadFolder("100")}}}, "CARD/DCIM/100! CARD/DCIM/A.JPG! "},
        {{{"CARD", {unreadFolder("DCIM")}}}, "CARD/DCIM/100! CARD/DCIM/A.JPG! "},
        {{{"", {unreadFolder("CARD")}}}, "/CARD! CARD/DCIM/100! CARD/DCIM/A.JPG! "},
        {{{"", {unreadFolder("Speicherkarte")}}}, "/CARD! CARD/DCIM/100! CARD/DCIM/A.JPG! "},
    };
    for (const auto& [found, left] : cases) {
        CardListing listing = before;
        EXPECT_EQ(dropReadFolders(listing, found), left != shown(before)) << left;
        EXPECT_EQ(shown(listing), left);
    }
}

}  // namespace
}  // namespace bildkurier
