// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Error.h"

#include <expected>
#include <utility>

namespace bildkurier {

/// A value, or the reason why there is none. Dropping one is a warning.
template <class T = void>
struct [[nodiscard]] Result : std::expected<T, Error> {
    using std::expected<T, Error>::expected;
};

/// What a function returns that fails with `message`.
inline std::unexpected<Error> failure(std::string message) {
    return std::unexpected(Error{std::move(message)});
}

}  // namespace bildkurier
