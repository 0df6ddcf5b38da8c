// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace bildkurier {
namespace {

/// Sends an import Ctrl-C while it writes its second file, a large one.
class InterruptTest : public ProgramTest {
protected:
    void SetUp() override {
        needFaults();
        addLarge("IMG_1.JPG", 5'000, 1);
        addHollow("IMG_2.MP4", 64U << 20U, 2);
        addLarge("IMG_3.JPG", 5'000, 3);
        addLarge("IMG_4.JPG", 5'000, 4);
        std::filesystem::create_directory(destination);
    }

    /// Numbers of the calls that write the large file.
    std::vector<long> writes() const {
        std::vector<long> numbers;
        for (const auto& call : callsOfImport()) {
            if (call.name == "write" && call.path.ends_with("/IMG_2.MP4")) {
                numbers.push_back(call.number);
            }
        }
        std::filesystem::remove_all(destination);
        std::filesystem::create_directory(destination);
        return numbers;
    }

    ProgramResult importInterruptedAt(const std::string& calls) const {
        auto environment = watching(destination, folder.path("interrupted.log"));
        environment["FAULTS_SIGINT_AT"] = calls;
        return import({}, environment);
    }

    /// Whether what is at the destination is exactly what the lines say, and is whole.
    void expectOnly(const std::vector<std::string>& saved) const {
        const Tree found = tree(destination);
        const Tree wanted = visibleFiles(tree(card));
        for (const auto& [name, bytes] : visibleFiles(found)) {
            EXPECT_TRUE(bytes == wanted.at(name)) << name;
        }
        EXPECT_EQ(visibleFiles(found).size(), saved.size());
        EXPECT_FALSE(hasHidden(found));
    }
};

TEST_F(InterruptTest, TheFirstTimeFinishesTheFileInHand) {
    const auto numbers = writes();
    ASSERT_GT(numbers.size(), 10U);
    const auto result = importInterruptedAt(std::to_string(numbers.front()));
    EXPECT_EQ(result.exitStatus, 130);
    const ImportOutput output(result.out);
    EXPECT_EQ(output.saved, (Strings{"JPG/IMG_1.JPG", "MP4/IMG_2.MP4"})) << result.out;
    ASSERT_TRUE(output.summary) << result.out;
    EXPECT_EQ(output.summary->loaded, 2);
    EXPECT_TRUE(output.summary->cancelled);
    expectOnly(output.saved);
}

TEST_F(InterruptTest, TheSecondTimeStopsAtOnce) {
    const auto numbers = writes();
    ASSERT_GT(numbers.size(), 10U);
    const auto result = importInterruptedAt(std::to_string(numbers[1]) + "," +
                                            std::to_string(numbers[numbers.size() / 2]));
    EXPECT_EQ(result.exitStatus, 130);
    const ImportOutput output(result.out);
    EXPECT_EQ(output.saved, Strings{"JPG/IMG_1.JPG"}) << result.out;
    expectOnly(output.saved);
}

TEST_F(InterruptTest, LeavesWhatTheNextImportCompletes) {
    const auto numbers = writes();
    ASSERT_GT(numbers.size(), 10U);
    importInterruptedAt(std::to_string(numbers.front()));
    const auto result = import();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(ImportOutput(result.out).saved, (Strings{"JPG/IMG_3.JPG", "JPG/IMG_4.JPG"}));
    EXPECT_TRUE(visibleFiles(tree(destination)) == visibleFiles(tree(card)));
}

}  // namespace
}  // namespace bildkurier
