// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <random>

namespace bildkurier {
namespace {

/// Kills an import at random calls and goes on with it, over and over.
class CrashTest : public ProgramTest {
protected:
    static constexpr int files = 300;

    void SetUp() override {
        needFaults();
        for (int i = 0; i < files; ++i) {
            const int size = i % 100 == 50 ? 5'000'000 : 500 + 97 * i;
            addLarge("IMG_" + std::to_string(1'000 + i) + ".JPG", static_cast<std::size_t>(size),
                     i);
        }
    }
};

TEST_F(CrashTest, NeverLeavesAHalfFileAndLosesNothing) {
    const Tree wanted = visibleFiles(tree(card));
    std::filesystem::create_directory(destination);
    const long calls = std::ssize(callsOfImport());
    std::filesystem::remove_all(destination);
    std::filesystem::create_directory(destination);

    const auto seed = std::random_device()();
    std::cout << "seed " << seed << "\n";
    std::mt19937 random(seed);
    const auto from1To = [&random](long last) {
        return std::uniform_int_distribution<long>(1, last)(random);
    };
    const int kills = 60;
    const std::string log = folder.path("run.log");
    long present = 0;
    for (int i = 0; i < kills; ++i) {
        // A file that is there costs one call of the scan. Most kills come after the scan.
        const long scan = present + 5;
        const long at = from1To(10) == 1 ? from1To(scan) : scan + from1To(2 * calls / kills);
        Environment environment = watching(destination, log);
        environment["FAULTS_KILL_AT"] = std::to_string(at);
        environment["FAULTS_KILL"] =
            std::array{"before", "during", "after"}.at(static_cast<std::size_t>(from1To(3) - 1));
        const auto result = import({}, environment);
        ASSERT_EQ(result.signal, SIGKILL)
            << "kill " << i << " at call " << at << ": " << result.out << result.err;

        const Tree found = visibleFiles(tree(destination));
        for (const auto& [name, bytes] : found) {
            ASSERT_TRUE(wanted.contains(name)) << name;
            ASSERT_TRUE(wanted.at(name) == bytes) << name << " differs after kill " << i;
        }
        present = std::ssize(found);
    }
    EXPECT_GT(present, 0);
    EXPECT_LT(present, files);

    const auto last = import();
    EXPECT_EQ(last.exitStatus, 0) << last.out << last.err;
    const Tree found = tree(destination);
    EXPECT_TRUE(visibleFiles(found) == wanted);
    EXPECT_FALSE(hasHidden(found));
}

}  // namespace
}  // namespace bildkurier
