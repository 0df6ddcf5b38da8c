// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "ImportOutput.h"
#include "PrivateMounts.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

namespace bildkurier {
namespace {

class CaseBlindDestinationTest : public ProgramTest {
protected:
    void SetUp() override {
        std::filesystem::create_directory(destination);
        if (mountPrivately())
            volume = std::make_unique<CardLikeVolume>(destination, folder.makeFolder("backing"));
        if (!volume || !volume->isMounted()) {
            GTEST_SKIP() << "mounting takes root and a kernel with file systems in user space";
        }
    }
    void TearDown() override { volume.reset(); }

    std::unique_ptr<CardLikeVolume> volume;
};

TEST_F(CaseBlindDestinationTest, TakesNamesForOneThatDifferInCase) {
    std::ofstream(destination + "/IMG_1.JPG") << "a picture";
    EXPECT_TRUE(std::filesystem::exists(destination + "/img_1.jpg"));
    EXPECT_EQ(tree(destination), (Tree{{"IMG_1.JPG", "a picture"}}));
}

TEST_F(CaseBlindDestinationTest, GetsBothOfTwoFilesWhoseNamesDifferInCase) {
    add("IMG_1.JPG", "one");
    add("img_1.jpg", "another");
    const auto result = import();
    EXPECT_EQ(result.exitStatus, 0) << result.out << result.err;
    EXPECT_EQ(ImportOutput(result.out).saved.size(), 2U) << result.out;
    EXPECT_EQ(ImportOutput(result.out).renamed.size(), 1U) << result.out;

    std::set<std::string> found;
    for (const auto& [name, bytes] : visibleFiles(tree(destination))) found.insert(bytes);
    EXPECT_EQ(found, (std::set<std::string>{"one", "another"}));

    // The one that was renamed is not known by its name on the card.
    const auto again = import();
    EXPECT_EQ(again.exitStatus, 0) << again.err;
    EXPECT_EQ(ImportOutput(again.out).saved.size(), 1U) << again.out;
    EXPECT_EQ(ImportOutput(again.out).renamed.size(), 1U) << again.out;
    EXPECT_EQ(visibleFiles(tree(destination)).size(), 3U);
    EXPECT_FALSE(hasHidden(tree(destination)));
}

}  // namespace
}  // namespace bildkurier
