// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "IniUserDefaults.h"
#include "MemoryUserDefaults.h"
#include "TemporaryFolder.h"
#include "UserDefaultsSettings.h"
#include "UserFolders.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace bildkurier {

namespace {

using Text = std::optional<std::string>;

struct TextSetting {
    const char* key;
    std::function<Text(const SettingsStore&)> read;
    std::function<void(SettingsStore&, const std::string&)> write;
    Text whenAbsent;
};

struct Switch {
    const char* key;
    bool (SettingsStore::*read)() const;
    void (SettingsStore::*write)(bool);
    bool whenAbsent;
};

const TextSetting texts[] = {
    {"dest", [](const SettingsStore& settings) { return settings.destination().path; },
     [](SettingsStore& settings, const std::string& text) {
         settings.setDestination(Url::file(text));
     },
     homeFolder() + "/Pictures/Bildkurier"},
    {"sftpUser", &SettingsStore::sftpUser, &SettingsStore::setSftpUser, ""},
    {"sftpHost", &SettingsStore::sftpHost, &SettingsStore::setSftpHost, ""},
    {"sftpPath", &SettingsStore::sftpPath, &SettingsStore::setSftpPath, ""},
    {"fromDay", &SettingsStore::fromDay, &SettingsStore::setFromDay, std::nullopt},
    {"autoImportCameraIdentity", &SettingsStore::autoImportCameraIdentity,
     &SettingsStore::setAutoImportCameraIdentity, std::nullopt},
    {"autoImportCameraName", &SettingsStore::autoImportCameraName,
     &SettingsStore::setAutoImportCameraName, std::nullopt},
};

constexpr Switch switches[] = {
    {"byDate", &SettingsStore::byDate, &SettingsStore::setByDate, false},
    {"byType", &SettingsStore::byType, &SettingsStore::setByType, true},
    {"useFromDate", &SettingsStore::useFromDate, &SettingsStore::setUseFromDate, false},
    {"autoImportEnabled", &SettingsStore::autoImportEnabled, &SettingsStore::setAutoImportEnabled,
     false},
};

class UserDefaultsSettingsTest : public testing::Test {
protected:
    auto& values() { return defaults_->values; }
    MemoryUserDefaults& defaults() { return *defaults_; }
    UserDefaultsSettings settings() const { return UserDefaultsSettings(defaults_); }

private:
    std::shared_ptr<MemoryUserDefaults> defaults_ = std::make_shared<MemoryUserDefaults>();
};

TEST_F(UserDefaultsSettingsTest, AnswersTheDefaultsInAFreshInstallation) {
    for (const auto& text : texts) EXPECT_EQ(text.read(settings()), text.whenAbsent) << text.key;
    for (const auto& each : switches)
        EXPECT_EQ((settings().*each.read)(), each.whenAbsent) << each.key;
    EXPECT_EQ(settings().destinationKind(), DestinationKind::folder);
    EXPECT_EQ(settings().destination(), Url::file(homeFolder() + "/Pictures/Bildkurier"));
    EXPECT_TRUE(values().empty()) << "reading stores nothing";
}

TEST_F(UserDefaultsSettingsTest, StoresTextsAsTextsUnderTheirKeys) {
    for (const auto& text : texts) {
        auto written = settings();
        for (const std::string value : {"/a b", "true", ""}) {
            text.write(written, value);
            EXPECT_EQ(std::get<std::string>(values().at(text.key)), value) << text.key;
            const bool isKept = text.key != std::string("dest") || value.starts_with('/');
            EXPECT_EQ(text.read(settings()), isKept ? value : text.whenAbsent) << text.key;
        }
    }
    EXPECT_EQ(values().size(), std::size(texts));
}

TEST_F(UserDefaultsSettingsTest, StoresBooleansAsBooleansUnderTheirKeys) {
    for (const auto& each : switches) {
        auto written = settings();
        for (const bool value : {!each.whenAbsent, each.whenAbsent}) {
            (written.*each.write)(value);
            EXPECT_EQ(std::get<bool>(values().at(each.key)), value) << each.key;
            EXPECT_EQ((settings().*each.read)(), value) << each.key;
        }
    }
    EXPECT_EQ(values().size(), std::size(switches));
}

TEST_F(UserDefaultsSettingsTest, TakesAValueOfTheWrongTypeForAbsent) {
    for (const auto& text : texts) values()[text.key] = true;
    for (const auto& each : switches) values()[each.key] = each.whenAbsent ? "false" : "true";
    values()["destinationKind"] = true;
    for (const auto& text : texts) EXPECT_EQ(text.read(settings()), text.whenAbsent) << text.key;
    for (const auto& each : switches)
        EXPECT_EQ((settings().*each.read)(), each.whenAbsent) << each.key;
    EXPECT_EQ(settings().destinationKind(), DestinationKind::folder);
}

TEST_F(UserDefaultsSettingsTest, ReadsExactlySftpAsSftp) {
    for (const auto* other : {"folder", "SFTP", "Sftp", " sftp", "sftp ", "", "ftp"}) {
        values()["destinationKind"] = other;
        EXPECT_EQ(settings().destinationKind(), DestinationKind::folder) << other;
    }
    values()["destinationKind"] = "sftp";
    EXPECT_EQ(settings().destinationKind(), DestinationKind::sftp);
}

TEST_F(UserDefaultsSettingsTest, StoresTheKindOfDestinationAsText) {
    settings().setDestinationKind(DestinationKind::sftp);
    EXPECT_EQ(std::get<std::string>(values().at("destinationKind")), "sftp");
    settings().setDestinationKind(DestinationKind::folder);
    EXPECT_EQ(std::get<std::string>(values().at("destinationKind")), "folder");
    EXPECT_EQ(values().size(), 1U);
}

TEST_F(UserDefaultsSettingsTest, StoresThePathOfTheDestination) {
    settings().setDestination(Url::file("/Bilder/\xFF 1%41"));
    EXPECT_EQ(std::get<std::string>(values().at("dest")), "/Bilder/\xFF 1%41");
    EXPECT_EQ(settings().destination(), Url::file("/Bilder/\xFF 1%41"));
}

TEST_F(UserDefaultsSettingsTest, TakesADestinationThatIsNoWholePathForAbsent) {
    for (const auto* path : {"", "bilder", "./bilder", "~/bilder"}) {
        values()["dest"] = path;
        EXPECT_EQ(settings().destination(), Url::file(homeFolder() + "/Pictures/Bildkurier"));
    }
}

TEST_F(UserDefaultsSettingsTest, TellsWhenAChoiceCannotBeStored) {
    EXPECT_FALSE(settings().lostChanges());
    defaults().losesChanges = true;
    EXPECT_TRUE(settings().lostChanges());
}

TEST_F(UserDefaultsSettingsTest, AnswersADestinationThatDoesNotExist) {
    values()["dest"] = "/gibt/es/nicht";
    EXPECT_EQ(settings().destination(), Url::file("/gibt/es/nicht"));
}

TEST_F(UserDefaultsSettingsTest, AnswersWhatIsStoredNowAndNotWhatItHasRead) {
    const auto before = settings();
    EXPECT_FALSE(before.autoImportEnabled());
    values()["autoImportEnabled"] = true;
    EXPECT_TRUE(before.autoImportEnabled());
}

TEST(UserDefaultsSettings, SurviveTheEndOfTheProgram) {
    const TemporaryFolder folder;
    const auto settings = [&] {
        return UserDefaultsSettings(std::make_shared<IniUserDefaults>(folder.path("a.conf")));
    };
    ChildProcess earlier([&] {
        settings().setByType(false);
        settings().setDestinationKind(DestinationKind::sftp);
        settings().setAutoImportCameraName("true");
        return true;
    });
    ASSERT_TRUE(earlier.wentWell());
    EXPECT_FALSE(settings().byType());
    EXPECT_EQ(settings().destinationKind(), DestinationKind::sftp);
    EXPECT_EQ(settings().autoImportCameraName(), "true");
}

}  // namespace

}  // namespace bildkurier
