// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <string>

namespace bildkurier {

/// How a program ended and what it wrote.
struct CommandResult {
    std::int32_t status;  ///< 0 is success; -1 when the program could not be started
    /// Standard output and standard error as one text, in the order written, without white
    /// space round it; empty when it is not valid UTF-8.
    std::string output;
    /// White space that the last line of the output ended in.
    std::string lastBlanks = {};  // May be left out. NOLINT(readability-redundant-member-init)

    bool operator==(const CommandResult&) const = default;
};

}  // namespace bildkurier
