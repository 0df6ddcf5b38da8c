// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "DestinationKind.h"
#include "Url.h"

#include <optional>
#include <string>

namespace bildkurier {

/// The user's choices, kept between launches. Reading answers the default where nothing, or
/// something of another type, is stored; writing stores at once. Main thread.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The destination folder of this computer, by default Pictures/Bildkurier in the user's
    /// home. It need not exist.
    virtual Url destination() const = 0;
    virtual void setDestination(const Url& folder) = 0;

    virtual DestinationKind destinationKind() const = 0;  ///< folder
    virtual void setDestinationKind(DestinationKind kind) = 0;

    virtual std::string sftpUser() const = 0;  ///< empty
    virtual void setSftpUser(const std::string& user) = 0;
    virtual std::string sftpHost() const = 0;  ///< empty; may end in ":port"
    virtual void setSftpHost(const std::string& host) = 0;
    virtual std::string sftpPath() const = 0;  ///< empty
    virtual void setSftpPath(const std::string& path) = 0;

    virtual bool byDate() const = 0;  ///< false
    virtual void setByDate(bool byDate) = 0;
    virtual bool byType() const = 0;  ///< true
    virtual void setByType(bool byType) = 0;

    virtual bool useFromDate() const = 0;  ///< false
    virtual void setUseFromDate(bool useFromDate) = 0;
    virtual std::optional<std::string> fromDay() const = 0;  ///< "yyyy-MM-dd"
    virtual void setFromDay(const std::string& day) = 0;

    virtual bool autoImportEnabled() const = 0;  ///< false
    virtual void setAutoImportEnabled(bool enabled) = 0;
    virtual std::optional<std::string> autoImportCameraIdentity() const = 0;
    virtual void setAutoImportCameraIdentity(const std::string& identity) = 0;
    virtual std::optional<std::string> autoImportCameraName() const = 0;
    virtual void setAutoImportCameraName(const std::string& name) = 0;

    /// Whether a choice could not be stored, and lasts as long as this process.
    virtual bool lostChanges() const = 0;
};

}  // namespace bildkurier
