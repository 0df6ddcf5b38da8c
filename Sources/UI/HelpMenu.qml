// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// A menu that drops from the bar.
T.Menu {
    id: menu

    implicitHeight: implicitContentHeight + 8
    implicitWidth: 190
    margins: 4
    padding: 4

    background: Rectangle {
        border.color: Theme.controlLine
        color: Theme.card
        radius: 8
    }
    contentItem: ListView {
        currentIndex: menu.currentIndex
        implicitHeight: contentHeight
        interactive: false
        model: menu.contentModel
    }
}
