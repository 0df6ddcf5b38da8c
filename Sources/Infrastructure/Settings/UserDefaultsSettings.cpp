// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserDefaultsSettings.h"

#include "SettingsKey.h"
#include "UserFolders.h"

#include <utility>

namespace bildkurier {

UserDefaultsSettings::UserDefaultsSettings(std::shared_ptr<UserDefaults> defaults)
    : defaults_(std::move(defaults)) {}

Url UserDefaultsSettings::destination() const {
    const auto path = defaults_->string(SettingsKey::destination);
    // No other path means the same wherever the program is started.
    if (path && path->starts_with('/')) return Url::file(*path);
    return Url::file(homeFolder()).appending("Pictures/Bildkurier");
}
void UserDefaultsSettings::setDestination(const Url& folder) {
    defaults_->setString(SettingsKey::destination, folder.path);
}

DestinationKind UserDefaultsSettings::destinationKind() const {
    const std::string stored = defaults_->string(SettingsKey::destinationKind).value_or("");
    return bildkurier::destinationKind(stored).value_or(DestinationKind::folder);
}
void UserDefaultsSettings::setDestinationKind(DestinationKind kind) {
    defaults_->setString(SettingsKey::destinationKind, std::string(rawValue(kind)));
}

std::string UserDefaultsSettings::sftpUser() const {
    return defaults_->string(SettingsKey::sftpUser).value_or("");
}
void UserDefaultsSettings::setSftpUser(const std::string& user) {
    defaults_->setString(SettingsKey::sftpUser, user);
}
std::string UserDefaultsSettings::sftpHost() const {
    return defaults_->string(SettingsKey::sftpHost).value_or("");
}
void UserDefaultsSettings::setSftpHost(const std::string& host) {
    defaults_->setString(SettingsKey::sftpHost, host);
}
std::string UserDefaultsSettings::sftpPath() const {
    return defaults_->string(SettingsKey::sftpPath).value_or("");
}
void UserDefaultsSettings::setSftpPath(const std::string& path) {
    defaults_->setString(SettingsKey::sftpPath, path);
}

bool UserDefaultsSettings::byDate() const {
    return defaults_->boolean(SettingsKey::byDate).value_or(false);
}
void UserDefaultsSettings::setByDate(bool byDate) {
    defaults_->setBoolean(SettingsKey::byDate, byDate);
}
bool UserDefaultsSettings::byType() const {
    return defaults_->boolean(SettingsKey::byType).value_or(true);
}
void UserDefaultsSettings::setByType(bool byType) {
    defaults_->setBoolean(SettingsKey::byType, byType);
}

bool UserDefaultsSettings::useFromDate() const {
    return defaults_->boolean(SettingsKey::useFromDate).value_or(false);
}
void UserDefaultsSettings::setUseFromDate(bool useFromDate) {
    defaults_->setBoolean(SettingsKey::useFromDate, useFromDate);
}
std::optional<std::string> UserDefaultsSettings::fromDay() const {
    return defaults_->string(SettingsKey::fromDay);
}
void UserDefaultsSettings::setFromDay(const std::string& day) {
    defaults_->setString(SettingsKey::fromDay, day);
}

bool UserDefaultsSettings::autoImportEnabled() const {
    return defaults_->boolean(SettingsKey::autoImportEnabled).value_or(false);
}
void UserDefaultsSettings::setAutoImportEnabled(bool enabled) {
    defaults_->setBoolean(SettingsKey::autoImportEnabled, enabled);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraIdentity() const {
    return defaults_->string(SettingsKey::autoImportCameraIdentity);
}
void UserDefaultsSettings::setAutoImportCameraIdentity(const std::string& identity) {
    defaults_->setString(SettingsKey::autoImportCameraIdentity, identity);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraName() const {
    return defaults_->string(SettingsKey::autoImportCameraName);
}
void UserDefaultsSettings::setAutoImportCameraName(const std::string& name) {
    defaults_->setString(SettingsKey::autoImportCameraName, name);
}

}  // namespace bildkurier
