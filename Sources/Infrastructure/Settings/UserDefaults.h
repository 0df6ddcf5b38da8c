// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string>

namespace bildkurier {

/// The user's small database of choices: one value per key, kept between launches and shared by
/// all processes of the user. Reading sees what another process has written; a value of another
/// type counts as absent. Writing replaces whatever was there, at once. Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Bytes that need not be valid UTF-8: paths, a system's bookmarks.
    virtual std::optional<std::string> string(const std::string& key) const = 0;
    virtual void setString(const std::string& key, const std::string& text) = 0;

    virtual std::optional<bool> boolean(const std::string& key) const = 0;
    virtual void setBoolean(const std::string& key, bool value) = 0;

    /// Whether something could not be stored, and lasts as long as this process, as far as the
    /// system tells.
    virtual bool lostChanges() const = 0;
};

}  // namespace bildkurier
