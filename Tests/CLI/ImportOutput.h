// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// What `bildkurier-cli import` said on standard output.
struct ImportOutput {
    explicit ImportOutput(const std::string& text);

    std::vector<std::string> saved;    ///< "JPG/IMG_1.JPG", of the lines with a check mark
    std::vector<std::string> failed;   ///< the lines about a file or folder that failed
    std::vector<std::string> renamed;  ///< the lines about a name that was taken

    /// The last line: how many were loaded, and how many failed.
    struct Summary {
        long loaded = 0;
        long failed = 0;
        bool cancelled = false;
    };
    std::optional<Summary> summary;
};

}  // namespace bildkurier
