// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderLayout.h"
#include "Instants.h"
#include "UntrustedText.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;
using std::chrono::May;

const Url destination = Url::file("/Bilder");

TEST(TypeFolder, IsTheUpperCasedExtension) {
    const struct {
        std::optional<std::string_view> name;
        std::string folder;
    } cases[] = {
        {"IMG_1.JPG", "JPG"},  {"IMG_1.jpg", "JPG"},
        {"IMG_1.jpeg", "JPG"}, {"IMG_1.Jpeg", "JPG"},
        {"IMG_1.JPEG", "JPG"}, {"clip.mp4", "MP4"},
        {"clip.mov", "MOV"},   {"a.b.cr3", "CR3"},
        {"scan.tif", "TIF"},   {"scan.tiff", "TIFF"},
        {"scan.jpe", "JPE"},   {".bashrc", "BASHRC"},
        {"a.grö", "GRÖ"},      {"a.\xC4x", "\xC4X"},
        {"clip", "Sonstige"},  {"clip.", "Sonstige"},
        {"", "Sonstige"},      {std::nullopt, "Sonstige"},
        {"jpeg", "Sonstige"},  {"100.JPG/clip", "Sonstige"},
    };
    for (const auto& [name, folder] : cases) {
        EXPECT_EQ(typeFolder(name), folder) << name.value_or("(none)");
    }
}

RC_GTEST_PROP(TypeFolder, DependsOnlyOnTheExtension, ()) {
    const auto extension = *rc::gen::nonEmpty(rc::gen::container<std::string>(
        rc::gen::oneOf(rc::gen::inRange('a', 'f'), rc::gen::inRange('0', '9'))));
    const auto base = *untrustedText();
    RC_ASSERT(typeFolder(base + "." + extension) == typeFolder("x." + extension));
}

RC_GTEST_PROP(TypeFolder, IsOnePathComponent, ()) {
    const auto folder = typeFolder(*untrustedText());
    RC_ASSERT(!folder.empty());
    RC_ASSERT(!folder.contains('/'));
    RC_ASSERT(!folder.contains('.'));
}

TEST(FolderLayout, SortsIntoDayFoldersAndTypeFoldersInside) {
    const Date shot = utc(2024y / May / 9, 12h);
    const struct {
        FolderLayout layout;
        std::string path;
    } cases[] = {
        {{.byDate = false, .byType = false}, "/Bilder"},
        {{.byDate = true, .byType = false}, "/Bilder/2024-05-09"},
        {{.byDate = false, .byType = true}, "/Bilder/JPG"},
        {{.byDate = true, .byType = true}, "/Bilder/2024-05-09/JPG"},
    };
    for (const auto& [layout, path] : cases) {
        EXPECT_EQ(layout.folder(destination, shot, "A.jpeg"), Url::file(path));
    }
}

TEST(FolderLayout, TakesTheLocalDay) {
    const FolderLayout layout{.byDate = true};
    EXPECT_EQ(layout.folder(destination, utc(2024y / May / 8, 21h + 59min), "A.JPG").path,
              "/Bilder/2024-05-08");
    EXPECT_EQ(layout.folder(destination, utc(2024y / May / 8, 22h), "A.JPG").path,
              "/Bilder/2024-05-09");
}

TEST(FolderLayout, PutsAFileWithoutNameIntoTheFolderForOthers) {
    const FolderLayout layout{.byType = true};
    EXPECT_EQ(layout.folder(destination, Date{}, std::nullopt).path, "/Bilder/Sonstige");
}

TEST(FolderLayout, StaysOnTheServer) {
    const Url server{.scheme = "sftp", .user = "anna", .host = "nas", .port = 2222, .path = "/b/"};
    const Url folder = FolderLayout{.byType = true}.folder(server, Date{}, "A.CR3");
    EXPECT_EQ(
        folder,
        (Url{.scheme = "sftp", .user = "anna", .host = "nas", .port = 2222, .path = "/b/CR3"}));
}

TEST(FolderLayout, EqualsOneWithTheSameFlags) {
    EXPECT_EQ(FolderLayout{}, (FolderLayout{.byDate = false, .byType = false}));
    EXPECT_NE(FolderLayout{.byDate = true}, FolderLayout{.byType = true});
}

}  // namespace
}  // namespace bildkurier
