// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ScratchDefaults.h"

#include <utility>

namespace bildkurier {

ScratchDefaults::ScratchDefaults(std::shared_ptr<UserDefaults> shared,
                                 std::set<std::string> ownKeys)
    : shared_(std::move(shared)), ownKeys_(std::move(ownKeys)) {}

template <class T>
std::optional<T> ScratchDefaults::own(const std::string& key) const {
    const auto found = values_.find(key);
    const T* value = found == values_.end() ? nullptr : std::get_if<T>(&found->second);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<std::string> ScratchDefaults::string(const std::string& key) const {
    return owns(key) ? own<std::string>(key) : shared_->string(key);
}

void ScratchDefaults::setString(const std::string& key, const std::string& text) {
    if (!owns(key)) return shared_->setString(key, text);
    values_[key] = text;
}

std::optional<bool> ScratchDefaults::boolean(const std::string& key) const {
    return owns(key) ? own<bool>(key) : shared_->boolean(key);
}

void ScratchDefaults::setBoolean(const std::string& key, bool value) {
    if (!owns(key)) return shared_->setBoolean(key, value);
    values_[key] = value;
}

}  // namespace bildkurier
