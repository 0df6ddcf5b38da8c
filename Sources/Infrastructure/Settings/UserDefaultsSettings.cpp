// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserDefaultsSettings.h"

#include "UserFolders.h"

#include <utility>

namespace bildkurier {

UserDefaultsSettings::UserDefaultsSettings(std::shared_ptr<UserDefaults> defaults)
    : defaults_(std::move(defaults)) {}

Url UserDefaultsSettings::destination() const {
    if (const auto path = defaults_->string("dest")) return Url::file(*path);
    return Url::file(homeFolder()).appending("Pictures/Bildkurier");
}
void UserDefaultsSettings::setDestination(const Url& folder) {
    defaults_->setString("dest", folder.path);
}

DestinationKind UserDefaultsSettings::destinationKind() const {
    const std::string stored = defaults_->string("destinationKind").value_or("");
    return bildkurier::destinationKind(stored).value_or(DestinationKind::folder);
}
void UserDefaultsSettings::setDestinationKind(DestinationKind kind) {
    defaults_->setString("destinationKind", std::string(rawValue(kind)));
}

std::string UserDefaultsSettings::sftpUser() const {
    return defaults_->string("sftpUser").value_or("");
}
void UserDefaultsSettings::setSftpUser(const std::string& user) {
    defaults_->setString("sftpUser", user);
}
std::string UserDefaultsSettings::sftpHost() const {
    return defaults_->string("sftpHost").value_or("");
}
void UserDefaultsSettings::setSftpHost(const std::string& host) {
    defaults_->setString("sftpHost", host);
}
std::string UserDefaultsSettings::sftpPath() const {
    return defaults_->string("sftpPath").value_or("");
}
void UserDefaultsSettings::setSftpPath(const std::string& path) {
    defaults_->setString("sftpPath", path);
}

bool UserDefaultsSettings::byDate() const { return defaults_->boolean("byDate").value_or(false); }
void UserDefaultsSettings::setByDate(bool byDate) { defaults_->setBoolean("byDate", byDate); }
bool UserDefaultsSettings::byType() const { return defaults_->boolean("byType").value_or(true); }
void UserDefaultsSettings::setByType(bool byType) { defaults_->setBoolean("byType", byType); }

bool UserDefaultsSettings::useFromDate() const {
    return defaults_->boolean("useFromDate").value_or(false);
}
void UserDefaultsSettings::setUseFromDate(bool useFromDate) {
    defaults_->setBoolean("useFromDate", useFromDate);
}
std::optional<std::string> UserDefaultsSettings::fromDay() const {
    return defaults_->string("fromDay");
}
void UserDefaultsSettings::setFromDay(const std::string& day) {
    defaults_->setString("fromDay", day);
}

bool UserDefaultsSettings::autoImportEnabled() const {
    return defaults_->boolean("autoImportEnabled").value_or(false);
}
void UserDefaultsSettings::setAutoImportEnabled(bool enabled) {
    defaults_->setBoolean("autoImportEnabled", enabled);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraIdentity() const {
    return defaults_->string("autoImportCameraIdentity");
}
void UserDefaultsSettings::setAutoImportCameraIdentity(const std::string& identity) {
    defaults_->setString("autoImportCameraIdentity", identity);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraName() const {
    return defaults_->string("autoImportCameraName");
}
void UserDefaultsSettings::setAutoImportCameraName(const std::string& name) {
    defaults_->setString("autoImportCameraName", name);
}

}  // namespace bildkurier
