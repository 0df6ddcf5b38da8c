// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UserDefaults.h"

namespace bildkurier {

/// The application's domain in the system's own database.
class StandardUserDefaults final : public UserDefaults {
public:
    std::optional<std::string> string(const std::string& key) const override;
    void setString(const std::string& key, const std::string& text) override;
    std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    bool lostChanges() const override { return false; }
};

}  // namespace bildkurier
