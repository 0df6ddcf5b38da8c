// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// Why something did not happen, as the sentence the window will show.
struct Error {
    std::string message;  ///< never empty

    bool operator==(const Error&) const = default;
};

}  // namespace bildkurier
