// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// A long line, its middle left out until someone wants to select in it.
Rectangle {
    id: line

    property alias text: input.text

    clip: true
    color: Theme.groove
    implicitHeight: input.implicitHeight + 12
    implicitWidth: 200
    radius: Theme.controlRadius

    TextInput {
        id: input

        Accessible.name: text
        Accessible.readOnly: true
        Accessible.role: Accessible.EditableText
        activeFocusOnTab: true
        anchors.left: parent.left
        anchors.margins: 6
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        clip: true
        // Unlike an opacity of 0, no colour keeps it in the accessibility tree.
        color: activeFocus ? Theme.text : "transparent"
        font.family: Theme.monospace
        font.pixelSize: Theme.captionSize
        readOnly: true
        selectByMouse: true
        selectedTextColor: "#ffffff"
        selectionColor: Theme.prominent

        onActiveFocusChanged: activeFocus ? selectAll() : deselect()
    }

    BodyText {
        Accessible.ignored: true
        anchors.fill: input
        elide: Text.ElideMiddle
        font: input.font
        maximumLineCount: 1
        text: input.text
        verticalAlignment: Text.AlignVCenter
        visible: !input.activeFocus
        wrapMode: Text.NoWrap
    }

    FocusRing {
        anchors.margins: 0
        corner: Theme.controlRadius - 3
        shown: input.activeFocus
    }
}
