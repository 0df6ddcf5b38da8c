// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UserDefaults.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>

namespace bildkurier {

/// The user's database, in which some keys are this process's own: they begin without a value,
/// and what is written to them is neither stored nor seen by others.
class ScratchDefaults final : public UserDefaults {
public:
    ScratchDefaults(std::shared_ptr<UserDefaults> shared, std::set<std::string> ownKeys);

    std::optional<std::string> string(const std::string& key) const override;
    void setString(const std::string& key, const std::string& text) override;
    std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    bool lostChanges() const override { return shared_->lostChanges(); }

private:
    bool owns(const std::string& key) const { return ownKeys_.contains(key); }
    template <class T>
    std::optional<T> own(const std::string& key) const;

    std::shared_ptr<UserDefaults> shared_;
    std::set<std::string> ownKeys_;
    std::map<std::string, std::variant<std::string, bool>> values_;
};

}  // namespace bildkurier
