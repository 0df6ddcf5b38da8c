// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

/// One camera file as the planner sees it.
struct ImportCandidate {
    std::optional<std::string> name;
    std::int64_t size = 0;  ///< bytes
    std::optional<Date> shotDate;
    bool isObstructed = false;  ///< cannot be loaded: neither imported before, nor another's copy

    bool operator==(const ImportCandidate&) const = default;
};

}  // namespace bildkurier
