// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// An item of a menu.
T.MenuItem {
    id: item

    Accessible.name: text
    implicitHeight: 28
    width: ListView.view ? ListView.view.width : implicitWidth

    background: Rectangle {
        color: item.highlighted ? Theme.prominent : "transparent"
        radius: 5
    }
    contentItem: BodyText {
        Accessible.ignored: true
        color: item.highlighted ? "#ffffff" : Theme.text
        leftPadding: 8
        text: item.text
        verticalAlignment: Text.AlignVCenter
    }
}
