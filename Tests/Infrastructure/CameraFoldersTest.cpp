// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraFolders.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bildkurier {
namespace {

TEST(CameraFolders, AreThoseThatCamerasMake) {
    const struct {
        const char* folder;
        bool isCard;
    } cases[] = {
        {"DCIM", true},          {"dcim", true},          {"Dcim/100CANON", true},
        {"PRIVATE/AVCHD", true}, {"private/avchd", true}, {"PRIVATE/M4ROOT", true},
        {"AVCHD", true},         {"M4ROOT", true},        {"BPAV", true},
        {"XDROOT", true},        {"CONTENTS", true},      {"contents", true},
        {"MP_ROOT", true},       {"SD_VIDEO", true},      {"PRIVATE/XDROOT", true},
        {"PRIVATE", false},      {"PRIVATE/DATA", false}, {"DCIM2", false},
        {"Bilder/DCIM", false},  {".Trash/DCIM", false},  {"PRIVATE/A/AVCHD", false},
        {"Dokumente", false},    {"M4ROO", false},
    };
    for (const auto& [folder, isCard] : cases) {
        const TemporaryFolder volume;
        volume.makeFolder("Andere");
        volume.makeFolder(folder);
        EXPECT_EQ(hasCameraFolders(volume.path()), isCard) << folder;
    }
}

TEST(CameraFolders, AreNeitherFilesNorLinks) {
    const TemporaryFolder volume;
    volume.write("DCIM", "a file");
    volume.write("PRIVATE/AVCHD", "a file");
    volume.makeFolder("elsewhere");
    std::filesystem::create_directory_symlink("elsewhere", volume.path("AVCHD"));
    EXPECT_FALSE(hasCameraFolders(volume.path()));
}

TEST(CameraFolders, AreNotInWhatCannotBeRead) {
    const TemporaryFolder volume;
    EXPECT_FALSE(hasCameraFolders(volume.path("missing")));
    EXPECT_FALSE(hasCameraFolders(""));
}

}  // namespace
}  // namespace bildkurier
