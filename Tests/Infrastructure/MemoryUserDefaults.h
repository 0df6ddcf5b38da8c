// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UserDefaults.h"

#include <map>
#include <variant>

namespace bildkurier {

/// User defaults that last as long as the test.
class MemoryUserDefaults final : public UserDefaults {
public:
    std::map<std::string, std::variant<std::string, bool>> values;
    bool losesChanges = false;

    std::optional<std::string> string(const std::string& key) const override {
        return stored<std::string>(key);
    }
    void setString(const std::string& key, const std::string& text) override { values[key] = text; }
    std::optional<bool> boolean(const std::string& key) const override { return stored<bool>(key); }
    void setBoolean(const std::string& key, bool value) override { values[key] = value; }
    bool lostChanges() const override { return losesChanges; }

private:
    template <class T>
    std::optional<T> stored(const std::string& key) const {
        const auto found = values.find(key);
        if (found == values.end() || !std::holds_alternative<T>(found->second)) return std::nullopt;
        return std::get<T>(found->second);
    }
};

}  // namespace bildkurier
