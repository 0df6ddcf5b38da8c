// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <cstdint>

namespace bildkurier {

/// Gives the application a light or a dark palette as the desktop's settings ask for it, now and
/// whenever they change. Without such settings the palette is the platform's.
class SystemAppearance final : public QObject {
    Q_OBJECT

public:
    SystemAppearance();

    /// What the desktop prefers, in the portal's numbers.
    enum class Preference : std::uint8_t { none = 0, dark = 1, light = 2 };
    static void apply(Preference preference);

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void ask();
};

}  // namespace bildkurier
