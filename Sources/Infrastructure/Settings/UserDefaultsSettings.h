// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "SettingsStore.h"
#include "UserDefaults.h"

#include <memory>

namespace bildkurier {

/// The user's choices in the user defaults database. Holds no copy of them.
class UserDefaultsSettings final : public SettingsStore {
public:
    explicit UserDefaultsSettings(std::shared_ptr<UserDefaults> defaults);

    Url destination() const override;
    void setDestination(const Url& folder) override;
    DestinationKind destinationKind() const override;
    void setDestinationKind(DestinationKind kind) override;
    std::string sftpUser() const override;
    void setSftpUser(const std::string& user) override;
    std::string sftpHost() const override;
    void setSftpHost(const std::string& host) override;
    std::string sftpPath() const override;
    void setSftpPath(const std::string& path) override;
    bool byDate() const override;
    void setByDate(bool byDate) override;
    bool byType() const override;
    void setByType(bool byType) override;
    bool useFromDate() const override;
    void setUseFromDate(bool useFromDate) override;
    std::optional<std::string> fromDay() const override;
    void setFromDay(const std::string& day) override;
    bool autoImportEnabled() const override;
    void setAutoImportEnabled(bool enabled) override;
    std::optional<std::string> autoImportCameraIdentity() const override;
    void setAutoImportCameraIdentity(const std::string& identity) override;
    std::optional<std::string> autoImportCameraName() const override;
    void setAutoImportCameraName(const std::string& name) override;
    bool lostChanges() const override { return defaults_->lostChanges(); }

private:
    std::shared_ptr<UserDefaults> defaults_;
};

}  // namespace bildkurier
