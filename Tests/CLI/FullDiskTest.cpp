// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"
#include "ProgramTest.h"
#include "TemporaryVolume.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace bildkurier {
namespace {

constexpr std::size_t megabyte = 1U << 20U;
constexpr auto needsRoot = "mounting a volume takes root";

class FullDiskTest : public ProgramTest {
protected:
    bool mountVolumeOf(std::size_t bytes) {
        volume = std::make_unique<TemporaryVolume>(bytes);
        destination = volume->path();
        return volume->isMounted();
    }
    void TearDown() override { volume.reset(); }

    std::unique_ptr<TemporaryVolume> volume;
};

TEST_F(FullDiskTest, FailsFileByFileAndKeepsWhatIsComplete) {
    if (!mountVolumeOf(204 * megabyte)) GTEST_SKIP() << needsRoot;
    const std::size_t files = 130;
    for (std::size_t i = 0; i < files; ++i) {
        addHollow("IMG_" + std::to_string(i) + ".JPG", 2 * megabyte - i);
    }
    const auto result = import();
    EXPECT_EQ(result.exitStatus, 1) << result.err;

    const ImportOutput output(result.out);
    EXPECT_GT(output.saved.size(), 50U);
    EXPECT_GT(output.failed.size(), 20U);
    EXPECT_EQ(output.saved.size() + output.failed.size(), files);
    for (const auto& line : output.failed) {
        EXPECT_TRUE(line.ends_with("Auf dem Volume ist kein Platz mehr frei")) << line;
    }
    ASSERT_TRUE(output.summary) << result.out;
    EXPECT_EQ(output.summary->loaded, std::ssize(output.saved));
    EXPECT_EQ(output.summary->failed, std::ssize(output.failed));

    const Tree found = tree(destination);
    const Tree wanted = visibleFiles(tree(card));
    for (const auto& saved : output.saved) {
        const std::string name = std::filesystem::path(saved).filename().string();
        ASSERT_TRUE(found.contains(saved)) << saved;
        EXPECT_TRUE(found.at(saved) == wanted.at(name)) << saved;
    }
    EXPECT_EQ(visibleFiles(found).size(), output.saved.size());
    EXPECT_FALSE(hasHidden(found));
}

TEST_F(FullDiskTest, IsLeftAloneWhereTheLargestFileHasNoRoom) {
    if (!mountVolumeOf(64 * megabyte)) GTEST_SKIP() << needsRoot;
    addHollow("IMG_1.JPG", 5'000);
    addHollow("IMG_2.JPG", 12'345'678);
    const auto result = import();
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.find("Zu wenig Platz für die größte Datei (12,3 MB nötig, ") !=
                std::string::npos)
        << result.err;
    EXPECT_EQ(tree(destination), Tree());
}

}  // namespace
}  // namespace bildkurier
