// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingRecord.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace bildkurier {
namespace {

Url onNas(std::string path) {
    return {.scheme = "sftp", .user = "anna", .host = "nas", .path = std::move(path)};
}

/// A listing without any other meanwhile.
void note(ListingRecord& record, const Url& folder, std::optional<std::string> trouble) {
    record.note(record.begin(), folder, std::move(trouble));
}

TEST(ListingRecord, KnowsOfNoTroubleBeforeItIsTold) {
    EXPECT_EQ(ListingRecord().troubleAbove(onNas("/p/a")), std::nullopt);
}

TEST(ListingRecord, TellsOfTroubleBelowTheFolderOnly) {
    ListingRecord record;
    note(record, onNas("/p"), "cut");
    for (const auto* below : {"/p/a", "/p/a/b.jpg", "/p/."})
        EXPECT_EQ(record.troubleAbove(onNas(below)), "cut") << below;
    for (const auto* elsewhere : {"/p", "/p/", "/", "/pa", "/q/p/a", ""})
        EXPECT_EQ(record.troubleAbove(onNas(elsewhere)), std::nullopt) << elsewhere;
}

TEST(ListingRecord, TellsServersApart) {
    ListingRecord record;
    note(record, onNas("/p"), "cut");
    Url others[] = {onNas("/p/a"), onNas("/p/a"), onNas("/p/a"), Url::file("/p/a")};
    others[0].host = "other";
    others[1].user = "berta";
    others[2].port = 2222;
    for (const Url& other : others) EXPECT_EQ(record.troubleAbove(other), std::nullopt);
}

TEST(ListingRecord, TakesSlashesAtTheEndAsTheyAreMeant) {
    ListingRecord record;
    note(record, onNas("/p/"), "cut");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), "cut");
    note(record, onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), std::nullopt);
    note(record, onNas("/"), "all cut");
    EXPECT_EQ(record.troubleAbove(onNas("/q")), "all cut");
}

TEST(ListingRecord, BelievesTheLastListing) {
    ListingRecord record;
    note(record, onNas("/p"), "cut");
    note(record, onNas("/p"), "cut again");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), "cut again");
    note(record, onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), std::nullopt);
}

TEST(ListingRecord, BelievesTheListingThatBeganLast) {
    ListingRecord record;
    const auto first = record.begin();
    const auto second = record.begin();
    record.note(second, onNas("/p"), std::nullopt);
    record.note(first, onNas("/p"), "cut");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), std::nullopt);

    const auto third = record.begin();
    const auto fourth = record.begin();
    record.note(fourth, onNas("/p"), "cut");
    record.note(third, onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), "cut");

    // Of a folder below, too.
    const auto ofAll = record.begin();
    note(record, onNas("/p/a"), std::nullopt);
    record.note(ofAll, onNas("/p"), "cut");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/b/x")), "cut");
}

TEST(ListingRecord, BelievesTheDeepestFolder) {
    ListingRecord record;
    note(record, onNas("/p"), "cut");
    note(record, onNas("/p/a"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/b/x")), "cut");
    note(record, onNas("/p/a"), "deep");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), "deep");
    // The whole of it was seen since.
    note(record, onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
}

TEST(ListingRecord, TellsOfAFolderThatAListingCouldNotEnter) {
    ListingRecord record;
    const auto listing = record.begin();
    record.note(listing, onNas("/p"), std::nullopt);
    record.note(listing, onNas("/p/a"), "locked");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), "locked");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/b/x")), "locked");
    EXPECT_EQ(record.troubleAbove(onNas("/p/x")), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/b/x")), std::nullopt);
    record.note(listing, onNas("/p"), "locked, too");
    EXPECT_EQ(record.troubleAbove(onNas("/p/x")), "locked, too");
    note(record, onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
}

}  // namespace
}  // namespace bildkurier
