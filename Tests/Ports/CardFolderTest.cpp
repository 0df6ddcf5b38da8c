// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFolder.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace bildkurier {
namespace {

TEST(CardFolder, IsAnyFolderThatCanBeRead) {
    const TemporaryFolder folder;
    std::filesystem::create_directory_symlink(folder.path(), folder.path("link"));
    EXPECT_TRUE(checkCardFolder(folder.path()));
    EXPECT_TRUE(checkCardFolder(folder.path("link")));
}

TEST(CardFolder, IsNamedWhereItIsNone) {
    const TemporaryFolder folder;
    for (const std::string& path : {folder.path("none"), folder.write("file", "no folder")}) {
        const auto checked = checkCardFolder(path);
        ASSERT_FALSE(checked) << path;
        EXPECT_EQ(checked.error().message, "Die Karte „" + path + "“ ist kein lesbarer Ordner.");
    }
    EXPECT_EQ(checkCardFolder("a\nb").error().message, "Die Karte „a␊b“ ist kein lesbarer Ordner.");
}

}  // namespace
}  // namespace bildkurier
