// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "SettingsStore.h"

#include <optional>
#include <string>

namespace bildkurier {

/// Settings that last as long as the test.
class MemorySettings final : public SettingsStore {
public:
    Url storedDestination = Url::file("/bilder");
    DestinationKind storedKind = DestinationKind::folder;
    std::string storedUser;
    std::string storedHost;
    std::string storedPath;
    bool storedByDate = false;
    bool storedByType = true;
    bool storedUseFromDate = false;
    std::optional<std::string> storedFromDay;
    bool storedAutoImport = false;
    std::optional<std::string> storedIdentity;
    std::optional<std::string> storedName;
    bool losesChanges = false;

    Url destination() const override { return storedDestination; }
    void setDestination(const Url& folder) override { storedDestination = folder; }
    DestinationKind destinationKind() const override { return storedKind; }
    void setDestinationKind(DestinationKind kind) override { storedKind = kind; }
    std::string sftpUser() const override { return storedUser; }
    void setSftpUser(const std::string& user) override { storedUser = user; }
    std::string sftpHost() const override { return storedHost; }
    void setSftpHost(const std::string& host) override { storedHost = host; }
    std::string sftpPath() const override { return storedPath; }
    void setSftpPath(const std::string& path) override { storedPath = path; }
    bool byDate() const override { return storedByDate; }
    void setByDate(bool byDate) override { storedByDate = byDate; }
    bool byType() const override { return storedByType; }
    void setByType(bool byType) override { storedByType = byType; }
    bool useFromDate() const override { return storedUseFromDate; }
    void setUseFromDate(bool useFromDate) override { storedUseFromDate = useFromDate; }
    std::optional<std::string> fromDay() const override { return storedFromDay; }
    void setFromDay(const std::string& day) override { storedFromDay = day; }
    bool autoImportEnabled() const override { return storedAutoImport; }
    void setAutoImportEnabled(bool enabled) override { storedAutoImport = enabled; }
    std::optional<std::string> autoImportCameraIdentity() const override { return storedIdentity; }
    void setAutoImportCameraIdentity(const std::string& identity) override {
        storedIdentity = identity;
    }
    std::optional<std::string> autoImportCameraName() const override { return storedName; }
    void setAutoImportCameraName(const std::string& name) override { storedName = name; }
    bool lostChanges() const override { return losesChanges; }
};

}  // namespace bildkurier
