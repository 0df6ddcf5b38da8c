// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFoundation.h"
#include "StandardUserDefaults.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

class StandardUserDefaultsTest : public testing::Test {
protected:
    StandardUserDefaults defaults;
    FakeFoundation& fake = FakeFoundation::shared();

    void SetUp() override { FakeFoundation::reset(); }
    void put(id value) { [fake.defaults setObject:value forKey:@"key"]; }
    id stored() { return [fake.defaults objectForKey:@"key"]; }
};

TEST_F(StandardUserDefaultsTest, HasNothingUnderAKeyNeverWritten) {
    EXPECT_EQ(defaults.string("key"), std::nullopt);
    EXPECT_EQ(defaults.boolean("key"), std::nullopt);
}

TEST_F(StandardUserDefaultsTest, KeepsATextReadable) {
    defaults.setString("key", "/bilder ä");
    EXPECT_TRUE([stored() isEqual:@"/bilder ä"]);
    EXPECT_EQ(defaults.string("key"), "/bilder ä");
    EXPECT_EQ(defaults.boolean("key"), std::nullopt);
}

TEST_F(StandardUserDefaultsTest, KeepsBytesThatAreNoTextAsData) {
    defaults.setString("key", "book\xFF\xFE");
    EXPECT_TRUE([stored() isKindOfClass:[NSData class]]);
    EXPECT_EQ(defaults.string("key"), "book\xFF\xFE");
}

TEST_F(StandardUserDefaultsTest, KeepsZeroBytes) {
    const std::string text("a\0b", 3);
    defaults.setString("key", text);
    EXPECT_EQ(defaults.string("key"), text);
    defaults.setString("key", "");
    EXPECT_EQ(defaults.string("key"), "");
}

TEST_F(StandardUserDefaultsTest, KeepsABoolean) {
    for (const bool value : {true, false}) {
        defaults.setBoolean("key", value);
        EXPECT_EQ(defaults.boolean("key"), value);
        EXPECT_EQ(defaults.string("key"), std::nullopt);
    }
}

TEST_F(StandardUserDefaultsTest, TakesNothingOfAnotherType) {
    put(@"true");
    EXPECT_EQ(defaults.boolean("key"), std::nullopt);
    put(@[ @"true" ]);
    EXPECT_EQ(defaults.boolean("key"), std::nullopt);
    EXPECT_EQ(defaults.string("key"), std::nullopt);
    for (const int number : {0, 1, 5}) {
        put([NSNumber numberWithInt:number]);
        EXPECT_EQ(defaults.boolean("key"), std::nullopt) << number;
    }
}

}  // namespace
}  // namespace bildkurier
