// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <vector>

namespace bildkurier {

/// A line of the log that the preloaded library writes: one call that touched a folder.
struct LoggedCall {
    long number = 0;  ///< from 1
    std::string name;
    std::string path;
    std::string secondPath;  ///< the target of a rename
    long result = 0;
    int error = 0;      ///< errno of a failure
    std::string fault;  ///< "failed" or "halved" by the library, else empty

    bool operator==(const LoggedCall&) const = default;
};

/// The calls in the log at `path`, in order.
std::vector<LoggedCall> readCallLog(const std::string& path);

}  // namespace bildkurier
