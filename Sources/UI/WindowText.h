// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Formatting.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

inline QString windowText(const std::string& text) { return QString::fromStdString(text); }

/// Absent is empty.
inline QString windowText(const std::optional<std::string>& text) {
    return windowText(text.value_or(std::string()));
}

inline QString countText(std::int64_t count) { return windowText(formatCount(count)); }

}  // namespace bildkurier
