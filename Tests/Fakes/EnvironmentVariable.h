// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string>

namespace bildkurier {

/// Gives a variable of the environment another value, or none, for as long as this lives. Only
/// while the test has no other thread.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value);
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable();

private:
    void set(const std::optional<std::string>& value) const;

    std::string name_;
    std::optional<std::string> before_;
};

}  // namespace bildkurier
