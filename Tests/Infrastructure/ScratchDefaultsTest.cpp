// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "IniUserDefaults.h"
#include "MemoryUserDefaults.h"
#include "ScratchDefaults.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

class ScratchDefaultsTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    std::shared_ptr<IniUserDefaults> shared =
        std::make_shared<IniUserDefaults>(folder.path("settings.conf"));
};

TEST_F(ScratchDefaultsTest, BeginWithoutAValueForTheirOwnKeys) {
    shared->setString("dest", "/a");
    shared->setBoolean("byDate", true);
    const ScratchDefaults scratch(shared, {"dest", "byDate"});
    EXPECT_EQ(scratch.string("dest"), std::nullopt);
    EXPECT_EQ(scratch.boolean("byDate"), std::nullopt);
}

TEST_F(ScratchDefaultsTest, KeepTheirOwnKeysToThemselves) {
    shared->setString("dest", "/a");
    ScratchDefaults scratch(shared, {"dest", "byDate"});
    scratch.setString("dest", "/b");
    scratch.setBoolean("byDate", true);
    EXPECT_EQ(scratch.string("dest"), "/b");
    EXPECT_EQ(scratch.boolean("byDate"), true);
    EXPECT_EQ(shared->string("dest"), "/a");
    EXPECT_EQ(shared->boolean("byDate"), std::nullopt);
}

TEST_F(ScratchDefaultsTest, TakeAValueOfAnotherTypeForNone) {
    ScratchDefaults scratch(shared, {"byDate"});
    scratch.setString("byDate", "ja");
    EXPECT_EQ(scratch.boolean("byDate"), std::nullopt);
}

TEST_F(ScratchDefaultsTest, ShareAllOtherKeys) {
    ScratchDefaults scratch(shared, {"dest"});
    scratch.setString("fromDay", "2024-05-09");
    shared->setBoolean("byType", false);
    EXPECT_EQ(shared->string("fromDay"), "2024-05-09");
    EXPECT_EQ(scratch.boolean("byType"), false);
}

TEST_F(ScratchDefaultsTest, TellWhenTheOthersCannotBeStored) {
    const auto memory = std::make_shared<MemoryUserDefaults>();
    const ScratchDefaults scratch(memory, {"dest"});
    EXPECT_FALSE(scratch.lostChanges());
    memory->losesChanges = true;
    EXPECT_TRUE(scratch.lostChanges());
}

}  // namespace
}  // namespace bildkurier
