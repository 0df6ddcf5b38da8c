// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "IniUserDefaults.h"
#include "MemoryUserDefaults.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace bildkurier {

namespace {

/// A database with the surroundings that a test of it needs.
class DefaultsStand {
public:
    virtual ~DefaultsStand() = default;

    virtual UserDefaults& defaults() = 0;
    /// The same database, as the next launch sees it.
    virtual UserDefaults& nextLaunch() = 0;
};

class MemoryStand final : public DefaultsStand {
public:
    UserDefaults& defaults() override { return defaults_; }
    UserDefaults& nextLaunch() override { return defaults_; }

private:
    MemoryUserDefaults defaults_;
};

class IniStand final : public DefaultsStand {
public:
    // QSettings would share what it has read with objects of the same path.
    IniStand() { std::filesystem::create_directory_symlink("Ordner", folder_.path("Link")); }

    UserDefaults& defaults() override { return defaults_; }
    UserDefaults& nextLaunch() override { return nextLaunch_; }

private:
    TemporaryFolder folder_;
    IniUserDefaults defaults_{folder_.path("Ordner/a.conf")};
    IniUserDefaults nextLaunch_{folder_.path("Link/a.conf")};
};

struct DefaultsMaker {
    std::string name;
    std::function<std::unique_ptr<DefaultsStand>()> make;
};

class UserDefaultsContract : public testing::TestWithParam<DefaultsMaker> {
protected:
    UserDefaults& defaults() { return stand_->defaults(); }
    UserDefaults& nextLaunch() { return stand_->nextLaunch(); }

private:
    std::unique_ptr<DefaultsStand> stand_ = GetParam().make();
};

TEST_P(UserDefaultsContract, HasNothingUnderAKeyNeverWritten) {
    EXPECT_EQ(defaults().string("dest"), std::nullopt);
    EXPECT_EQ(defaults().boolean("byType"), std::nullopt);
    defaults().setString("destination", "/a");
    EXPECT_EQ(defaults().string("dest"), std::nullopt);
}

TEST_P(UserDefaultsContract, KeepsATextByteForByte) {
    const std::string nul("a\0b", 3);
    for (const std::string& text :
         {std::string(), std::string(" a "), std::string("a, b; c=d"), std::string("[General]"),
          std::string("\"a\" 'b'"), std::string("C:\\x41\n"), std::string("zwei\nZeilen\r\n\t"),
          std::string("@ByteArray(a)"), std::string("@Invalid()"), std::string("@@"),
          std::string("Übergänge 📷"), std::string("\uFEFFa"), std::string("\xFF\xFE"),
          std::string("a\xC3"), std::string("\xED\xA0\x80"), std::string("%41%2F"), nul}) {
        defaults().setString("dest", text);
        EXPECT_EQ(defaults().string("dest"), text);
        EXPECT_EQ(nextLaunch().string("dest"), text);
    }
}

TEST_P(UserDefaultsContract, KeepsAnyBytes) {
    EXPECT_TRUE(rc::check([&](const std::string& text) {
        defaults().setString("dest", text);
        RC_ASSERT(nextLaunch().string("dest") == text);
    }));
}

TEST_P(UserDefaultsContract, KeepsABoolean) {
    for (const bool value : {true, false}) {
        defaults().setBoolean("byType", value);
        EXPECT_EQ(defaults().boolean("byType"), value);
        EXPECT_EQ(nextLaunch().boolean("byType"), value);
    }
}

TEST_P(UserDefaultsContract, TakesNoTextForABoolean) {
    for (const auto* text : {"maybe", "true", "false", "1", "0", "YES", "True", ""}) {
        defaults().setString("byType", text);
        EXPECT_EQ(defaults().boolean("byType"), std::nullopt) << text;
        EXPECT_EQ(nextLaunch().boolean("byType"), std::nullopt) << text;
        EXPECT_EQ(nextLaunch().string("byType"), text);
    }
}

TEST_P(UserDefaultsContract, TakesNoBooleanForAText) {
    for (const bool value : {true, false}) {
        defaults().setBoolean("dest", value);
        EXPECT_EQ(defaults().string("dest"), std::nullopt);
        EXPECT_EQ(nextLaunch().string("dest"), std::nullopt);
    }
}

TEST_P(UserDefaultsContract, ReplacesAValueOfAnotherType) {
    defaults().setString("key", "maybe");
    defaults().setBoolean("key", true);
    EXPECT_EQ(nextLaunch().boolean("key"), true);
    defaults().setString("key", "maybe");
    EXPECT_EQ(nextLaunch().string("key"), "maybe");
}

TEST_P(UserDefaultsContract, LeavesTheOtherKeysAlone) {
    defaults().setString("sftpUser", "anna");
    defaults().setString("sftpHost", "fotos");
    defaults().setBoolean("byDate", true);
    nextLaunch().setString("sftpUser", "berta");
    EXPECT_EQ(defaults().string("sftpUser"), "berta");
    EXPECT_EQ(defaults().string("sftpHost"), "fotos");
    EXPECT_EQ(defaults().boolean("byDate"), true);
}

TEST_P(UserDefaultsContract, TellsSmallAndCapitalLettersOfKeysApart) {
    defaults().setString("dest", "a");
    defaults().setString("Dest", "b");
    EXPECT_EQ(nextLaunch().string("dest"), "a");
    EXPECT_EQ(nextLaunch().string("Dest"), "b");
}

INSTANTIATE_TEST_SUITE_P(
    All, UserDefaultsContract,
    testing::Values(DefaultsMaker{"Memory", [] { return std::make_unique<MemoryStand>(); }},
                    DefaultsMaker{"Ini", [] { return std::make_unique<IniStand>(); }}),
    [](const auto& stand) { return stand.param.name; });

}  // namespace

}  // namespace bildkurier
