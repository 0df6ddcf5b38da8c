// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string>

namespace bildkurier {

/// Lets the C library believe to be in another time zone for as long as this lives.
class InTimeZone {
public:
    explicit InTimeZone(const char* name);
    InTimeZone(const InTimeZone&) = delete;
    InTimeZone& operator=(const InTimeZone&) = delete;
    ~InTimeZone();

private:
    std::optional<std::string> before_;
};

}  // namespace bildkurier
