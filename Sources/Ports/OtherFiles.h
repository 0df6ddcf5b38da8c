// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace bildkurier {

/// What is on a camera besides what is imported, as far as somebody might miss it.
struct OtherFiles {
    /// How many there are of each sort. Untrusted.
    using Counts = std::map<std::string, std::int64_t>;

    Counts kinds;   ///< files by extension, in upper case; empty for those without one
    Counts hidden;  ///< hidden files and folders by name; into these nobody has looked

    /// All together; a hidden folder is one.
    std::int64_t count() const { return sum(kinds) + sum(hidden); }

    static std::int64_t sum(const Counts& counts);

    bool operator==(const OtherFiles&) const = default;
};

}  // namespace bildkurier
