// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EnvironmentVariable.h"

#include <stdlib.h>

#include <utility>

namespace bildkurier {

// NOLINTBEGIN(concurrency-mt-unsafe)
EnvironmentVariable::EnvironmentVariable(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
    if (const char* before = ::getenv(name_.c_str())) before_ = before;
    set(value);
}

EnvironmentVariable::~EnvironmentVariable() { set(before_); }

void EnvironmentVariable::set(const std::optional<std::string>& value) const {
    if (value) {
        ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
        ::unsetenv(name_.c_str());
    }
}
// NOLINTEND(concurrency-mt-unsafe)

}  // namespace bildkurier
