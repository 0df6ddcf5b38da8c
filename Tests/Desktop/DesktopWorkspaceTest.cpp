// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DesktopWorkspace.h"
#include "FileManager.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(DesktopWorkspace, ShowsTheFolderInTheFileManager) {
    const FileManager manager;
    DesktopWorkspace().open(Url::file("/home/anna/Bilder 100% #1"));
    EXPECT_EQ(manager.shown, QStringList{"/home/anna/Bilder 100% #1"});
}

}  // namespace
}  // namespace bildkurier
