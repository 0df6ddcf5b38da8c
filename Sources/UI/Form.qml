// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// Sections one below the other, scrolled when the window is too low for them.
Flickable {
    id: form

    default property alias sections: column.data

    readonly property Item focusItem: Window.activeFocusItem

    /// Scrolls to the control that the keyboard has come to.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y;
        contentY = Math.max(Math.min(contentY, top), top + item.height + 2 * Theme.margin - height);
    }

    function holds(item: Item): bool {
        return item !== null && (item === column || holds(item.parent));
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.implicitHeight + 2 * Theme.margin
    contentWidth: width
    objectName: "form"

    T.ScrollBar.vertical: SlimScrollBar {
    }

    onFocusItemChanged: if (holds(focusItem)) reveal(focusItem)

    Column {
        id: column

        spacing: 16
        width: form.width - 2 * Theme.margin
        x: Theme.margin
        y: Theme.margin
    }
}
