// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderOverlap.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bildkurier {
namespace {

TEST(FolderOverlap, IsThatOfFoldersWhichLieInOneAnother) {
    const TemporaryFolder folder;
    folder.makeFolder("card/DCIM");
    folder.makeFolder("card2");
    std::filesystem::create_directory_symlink(folder.path("card"), folder.path("link"));
    const struct {
        std::string one;
        std::string other;
        bool overlap;
    } cases[] = {
        {"card", "card", true},           {"card", "card/import", true},
        {"card/DCIM", "card", true},      {"link", "card/DCIM", true},
        {"link/not/yet", "card", true},   {"card/", "card", true},
        {"card", "card2", false},         {"card2", "card", false},
        {"link/../card2", "card", false}, {"card/DCIM", "card/MISC", false},
    };
    for (const auto& [one, other, overlap] : cases) {
        EXPECT_EQ(foldersOverlap(folder.path(one), folder.path(other)), overlap)
            << one << " " << other;
    }
    EXPECT_TRUE(foldersOverlap("/", folder.path("card")));
}

}  // namespace
}  // namespace bildkurier
