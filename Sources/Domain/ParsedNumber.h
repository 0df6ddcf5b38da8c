// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace bildkurier {

/// The whole of `text` as a decimal number; absent when it is none or does not fit. Only
/// signed numbers may have a sign, which is "-".
template <class Number>
std::optional<Number> parsedNumber(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace bildkurier
