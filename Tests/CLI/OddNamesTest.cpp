// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

using OddNamesTest = ProgramTest;

TEST_F(OddNamesTest, AreCopiedByteForByteAndShownReadable) {
    const std::string name = "IMG_\xFF\xC3.JPG";
    add(name, "odd");
    const auto result = import();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(tree(destination), (Tree{{"JPG/", ""}, {"JPG/" + name, "odd"}}));
    EXPECT_EQ(ImportOutput(result.out).saved, Strings{"JPG/IMG_\uFFFD\uFFFD.JPG"}) << result.out;
}

TEST_F(OddNamesTest, AreRecognisedTheNextTime) {
    add("IMG_\xFF.JPG", "broken");
    add("Übung.JPG", "umlaut");
    EXPECT_EQ(import().exitStatus, 0);
    const Tree before = tree(destination);
    const auto again = import();
    EXPECT_EQ(again.exitStatus, 0) << again.err;
    EXPECT_EQ(ImportOutput(again.out).saved, Strings()) << again.out;
    EXPECT_EQ(tree(destination), before);
}

}  // namespace
}  // namespace bildkurier
