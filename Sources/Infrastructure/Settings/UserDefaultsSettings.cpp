// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserDefaultsSettings.h"

#include "SettingsKeys.h"
#include "UserFolders.h"

#include <utility>

namespace bildkurier {

UserDefaultsSettings::UserDefaultsSettings(std::shared_ptr<UserDefaults> defaults)
    : defaults_(std::move(defaults)) {}

Url UserDefaultsSettings::destination() const {
    if (const auto path = defaults_->string(settingsKeys::destination)) return Url::file(*path);
    return Url::file(homeFolder()).appending("Pictures/Bildkurier");
}
void UserDefaultsSettings::setDestination(const Url& folder) {
    defaults_->setString(settingsKeys::destination, folder.path);
}

DestinationKind UserDefaultsSettings::destinationKind() const {
    const std::string stored = defaults_->string(settingsKeys::destinationKind).value_or("");
    return bildkurier::destinationKind(stored).value_or(DestinationKind::folder);
}
void UserDefaultsSettings::setDestinationKind(DestinationKind kind) {
    defaults_->setString(settingsKeys::destinationKind, std::string(rawValue(kind)));
}

std::string UserDefaultsSettings::sftpUser() const {
    return defaults_->string(settingsKeys::sftpUser).value_or("");
}
void UserDefaultsSettings::setSftpUser(const std::string& user) {
    defaults_->setString(settingsKeys::sftpUser, user);
}
std::string UserDefaultsSettings::sftpHost() const {
    return defaults_->string(settingsKeys::sftpHost).value_or("");
}
void UserDefaultsSettings::setSftpHost(const std::string& host) {
    defaults_->setString(settingsKeys::sftpHost, host);
}
std::string UserDefaultsSettings::sftpPath() const {
    return defaults_->string(settingsKeys::sftpPath).value_or("");
}
void UserDefaultsSettings::setSftpPath(const std::string& path) {
    defaults_->setString(settingsKeys::sftpPath, path);
}

bool UserDefaultsSettings::byDate() const {
    return defaults_->boolean(settingsKeys::byDate).value_or(false);
}
void UserDefaultsSettings::setByDate(bool byDate) {
    defaults_->setBoolean(settingsKeys::byDate, byDate);
}
bool UserDefaultsSettings::byType() const {
    return defaults_->boolean(settingsKeys::byType).value_or(true);
}
void UserDefaultsSettings::setByType(bool byType) {
    defaults_->setBoolean(settingsKeys::byType, byType);
}

bool UserDefaultsSettings::useFromDate() const {
    return defaults_->boolean(settingsKeys::useFromDate).value_or(false);
}
void UserDefaultsSettings::setUseFromDate(bool useFromDate) {
    defaults_->setBoolean(settingsKeys::useFromDate, useFromDate);
}
std::optional<std::string> UserDefaultsSettings::fromDay() const {
    return defaults_->string(settingsKeys::fromDay);
}
void UserDefaultsSettings::setFromDay(const std::string& day) {
    defaults_->setString(settingsKeys::fromDay, day);
}

bool UserDefaultsSettings::autoImportEnabled() const {
    return defaults_->boolean(settingsKeys::autoImportEnabled).value_or(false);
}
void UserDefaultsSettings::setAutoImportEnabled(bool enabled) {
    defaults_->setBoolean(settingsKeys::autoImportEnabled, enabled);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraIdentity() const {
    return defaults_->string(settingsKeys::autoImportCameraIdentity);
}
void UserDefaultsSettings::setAutoImportCameraIdentity(const std::string& identity) {
    defaults_->setString(settingsKeys::autoImportCameraIdentity, identity);
}
std::optional<std::string> UserDefaultsSettings::autoImportCameraName() const {
    return defaults_->string(settingsKeys::autoImportCameraName);
}
void UserDefaultsSettings::setAutoImportCameraName(const std::string& name) {
    defaults_->setString(settingsKeys::autoImportCameraName, name);
}

}  // namespace bildkurier
