// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QAccessible>
#include <QObject>
#include <QQuickItem>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace bildkurier {

/// What those who do not see are told of a window.
class AccessibleTree : public QObject {
    Q_OBJECT

public:
    /// The control of that role ("Button") and name that can be seen; null without one.
    Q_INVOKABLE QQuickItem* find(QQuickItem* anyItem, const QString& role,
                                 const QString& name) const;
    /// What is told of the one that `find` finds; empty without one.
    Q_INVOKABLE QVariantMap told(QQuickItem* anyItem, const QString& role,
                                 const QString& name) const;
    /// Everything that can be seen, in reading order, as in "Button: Importieren".
    Q_INVOKABLE QStringList all(QQuickItem* anyItem) const;
    /// The control that the keyboard works, in the same form.
    Q_INVOKABLE QString focused(QQuickItem* anyItem) const;

private:
    using Visit = std::function<void(QAccessibleInterface&)>;
    static void walk(QAccessibleInterface* from, const Visit& visit);
    static void walkWindow(QQuickItem* anyItem, const Visit& visit);
    static QString line(QAccessibleInterface& element);
};

}  // namespace bildkurier
