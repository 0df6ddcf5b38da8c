// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AccessibleTree.h"

#include <QMetaEnum>
#include <QQuickWindow>

namespace bildkurier {

namespace {

QString roleOf(QAccessibleInterface& element) {
    const auto roles = QMetaEnum::fromType<QAccessible::Role>();
    return QString::fromLatin1(roles.valueToKey(element.role()));
}

QString nameOf(QAccessibleInterface& element) { return element.text(QAccessible::Name); }

}  // namespace

void AccessibleTree::walk(QAccessibleInterface* from, const Visit& visit) {
    if (from == nullptr || from->state().invisible) return;
    visit(*from);
    for (int child = 0; child < from->childCount(); ++child) walk(from->child(child), visit);
}

void AccessibleTree::walkWindow(QQuickItem* anyItem, const Visit& visit) {
    walk(QAccessible::queryAccessibleInterface(anyItem->window()), visit);
}

QString AccessibleTree::line(QAccessibleInterface& element) {
    return roleOf(element) + ": " + nameOf(element);
}

QQuickItem* AccessibleTree::find(QQuickItem* anyItem, const QString& role,
                                 const QString& name) const {
    QQuickItem* found = nullptr;
    walkWindow(anyItem, [&](QAccessibleInterface& element) {
        if (found == nullptr && roleOf(element) == role && nameOf(element) == name)
            found = qobject_cast<QQuickItem*>(element.object());
    });
    return found;
}

QVariantMap AccessibleTree::told(QQuickItem* anyItem, const QString& role,
                                 const QString& name) const {
    auto* element = QAccessible::queryAccessibleInterface(find(anyItem, role, name));
    if (element == nullptr) return {};
    const auto state = element->state();
    return {{"description", element->text(QAccessible::Description)},
            {"value", element->text(QAccessible::Value)},
            {"checked", static_cast<bool>(state.checked)},
            {"checkable", static_cast<bool>(state.checkable)},
            {"disabled", static_cast<bool>(state.disabled)},
            {"focusable", static_cast<bool>(state.focusable)},
            {"readOnly", static_cast<bool>(state.readOnly)},
            {"children", element->childCount()}};
}

QStringList AccessibleTree::all(QQuickItem* anyItem) const {
    QStringList lines;
    walkWindow(anyItem, [&](QAccessibleInterface& element) { lines.append(line(element)); });
    return lines;
}

QString AccessibleTree::focused(QQuickItem* anyItem) const {
    auto* element = QAccessible::queryAccessibleInterface(anyItem->window()->activeFocusItem());
    return element == nullptr ? QString() : line(*element);
}

}  // namespace bildkurier
