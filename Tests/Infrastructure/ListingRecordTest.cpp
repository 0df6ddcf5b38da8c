// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingRecord.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace bildkurier {
namespace {

Url onNas(std::string path) {
    return {.scheme = "sftp", .user = "anna", .host = "nas", .path = std::move(path)};
}

TEST(ListingRecord, KnowsOfNoTroubleBeforeItIsTold) {
    EXPECT_EQ(ListingRecord().troubleAbove(onNas("/p/a")), std::nullopt);
}

TEST(ListingRecord, TellsOfTroubleBelowTheFolderOnly) {
    ListingRecord record;
    record.note(onNas("/p"), "cut");
    for (const auto* below : {"/p/a", "/p/a/b.jpg", "/p/."})
        EXPECT_EQ(record.troubleAbove(onNas(below)), "cut") << below;
    for (const auto* elsewhere : {"/p", "/p/", "/", "/pa", "/q/p/a", ""})
        EXPECT_EQ(record.troubleAbove(onNas(elsewhere)), std::nullopt) << elsewhere;
}

TEST(ListingRecord, TellsServersApart) {
    ListingRecord record;
    record.note(onNas("/p"), "cut");
    Url others[] = {onNas("/p/a"), onNas("/p/a"), onNas("/p/a"), Url::file("/p/a")};
    others[0].host = "other";
    others[1].user = "berta";
    others[2].port = 2222;
    for (const Url& other : others) EXPECT_EQ(record.troubleAbove(other), std::nullopt);
}

TEST(ListingRecord, TakesSlashesAtTheEndAsTheyAreMeant) {
    ListingRecord record;
    record.note(onNas("/p/"), "cut");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), "cut");
    record.note(onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), std::nullopt);
    record.note(onNas("/"), "all cut");
    EXPECT_EQ(record.troubleAbove(onNas("/q")), "all cut");
}

TEST(ListingRecord, BelievesTheLastListing) {
    ListingRecord record;
    record.note(onNas("/p"), "cut");
    record.note(onNas("/p"), "cut again");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), "cut again");
    record.note(onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a")), std::nullopt);
}

TEST(ListingRecord, BelievesTheDeepestFolder) {
    ListingRecord record;
    record.note(onNas("/p"), "cut");
    record.note(onNas("/p/a"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/b/x")), "cut");
    record.note(onNas("/p/a"), "deep");
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), "deep");
    // The whole of it was seen since.
    record.note(onNas("/p"), std::nullopt);
    EXPECT_EQ(record.troubleAbove(onNas("/p/a/x")), std::nullopt);
}

}  // namespace
}  // namespace bildkurier
