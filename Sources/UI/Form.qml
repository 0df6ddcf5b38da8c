// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

/// Sections one below the other, scrolled when the window is too low for them.
Flickable {
    id: form

    default property alias sections: column.data

    readonly property Item focusItem: Window.activeFocusItem

    /// Scrolls to the control that the keyboard has come to.
    function reveal(item: Item) {
        if (!item || !contains(mapFromItem(item, 0, 0).x, 0))
            return;
        const top = column.mapFromItem(item, 0, 0).y + column.y - 12;
        const bottom = top + item.height + 24;
        contentY = Math.max(Math.min(contentY, top), Math.min(bottom, contentHeight) - height);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.implicitHeight + 2 * Theme.margin
    contentWidth: width

    T.ScrollBar.vertical: SlimScrollBar {
    }

    ColumnLayout {
        id: column

        spacing: 16
        width: form.width - 2 * Theme.margin
        x: Theme.margin
        y: Theme.margin
    }
}
