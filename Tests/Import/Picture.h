// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

/// A file on a card, as it is and as the camera describes it.
struct Picture {
    std::optional<std::string> name;
    std::string contents;
    std::int64_t size = 0;  ///< as the camera says
    std::optional<Date> shot;
};

}  // namespace bildkurier
