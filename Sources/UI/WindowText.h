// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QLocale>
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

/// In the user's number format: "1.284".
inline QString countText(std::int64_t count) { return QLocale().toString(qlonglong{count}); }

}  // namespace bildkurier
