// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UserDefaults.h"

#include <memory>

class QSettings;
class QVariant;

namespace bildkurier {

/// User defaults as a file that people can read and change: KEY=VALUE below [General], Booleans
/// as true and false. Only its user may read the file. Changes by several processes at once are
/// all kept, on the disk once a call has returned. Where the file cannot be written, a change
/// lasts as long as this process. What cannot be read in the file is not there, and gone once
/// something is changed.
class IniUserDefaults final : public UserDefaults {
public:
    explicit IniUserDefaults(std::string path = standardPath());
    IniUserDefaults(const IniUserDefaults&) = delete;
    IniUserDefaults& operator=(const IniUserDefaults&) = delete;
    ~IniUserDefaults() override;

    /// bildkurier.conf in the user's folder for configuration.
    static std::string standardPath();

    std::optional<std::string> string(const std::string& key) const override;
    void setString(const std::string& key, const std::string& text) override;
    std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    bool lostChanges() const override;

private:
    void open();
    QVariant stored(const std::string& key) const;
    void store(const std::string& key, const QVariant& value);

    std::string path_;
    std::string folder_;
    std::unique_ptr<QSettings> file_;
};

}  // namespace bildkurier
