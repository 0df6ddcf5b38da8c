// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFolder.h"
#include "FakeCamera.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bildkurier {
namespace {

TEST(CardFolder, KnowsFoldersThatLieInOneAnother) {
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
        EXPECT_EQ(overlaps(folder.path(one), folder.path(other)), overlap) << one << " " << other;
    }
    EXPECT_TRUE(overlaps("/", folder.path("card")));
}

TEST(CardFolder, IsNoneForAnyOtherCamera) { EXPECT_EQ(cardFolder(FakeCamera("A")), std::nullopt); }

}  // namespace
}  // namespace bildkurier
