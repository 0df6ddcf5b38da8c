// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// Sections one below the other, scrolled when the window is too low for them.
Flickable {
    id: form

    default property alias sections: column.data

    readonly property Item focusItem: Window.activeFocusItem

    /// Scrolls until the item can be seen.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y;
        const wanted = Math.max(Math.min(contentY, top), top + item.height + 2 * Theme.margin - height);
        contentY = Math.max(0, Math.min(contentHeight - height, wanted));
    }

    /// As soon as what has just changed has its place.
    function revealSoon(item: Item) {
        unplaced.target = Window.window;
        unplaced.item = item;
    }

    function holds(item: Item): bool {
        return item !== null && (item === column || holds(item.parent));
    }

    /// What of it can be seen: the view, where it is a text that scrolls by itself.
    function shownPart(item: Item): Item {
        for (let around = item.parent; around !== column; around = around.parent)
            if (around instanceof Flickable)
                return around;
        return item;
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.implicitHeight + 2 * Theme.margin
    contentWidth: width
    objectName: "form"

    T.ScrollBar.vertical: SlimScrollBar {
    }

    // What was clicked stays where it is: the click has not ended.
    onFocusItemChanged: if (!pointer.active && holds(focusItem)) reveal(shownPart(focusItem))

    Connections {
        id: unplaced

        property Item item

        enabled: item !== null
        target: null

        function onFrameSwapped() {
            form.reveal(item);
            item = null;
        }
    }

    // Above all that can be clicked, so that it hears of a click first. It takes none.
    Item {
        anchors.fill: parent
        z: 1

        PointHandler {
            id: pointer

        }
    }

    Column {
        id: column

        spacing: 16
        width: form.width - 2 * Theme.margin
        x: Theme.margin
        y: Theme.margin
    }
}
