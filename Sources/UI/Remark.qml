// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// A quiet line in the middle of a card.
Column {
    id: remark

    property alias hint: hintText.text
    property color ink: Theme.secondary
    property alias symbol: drawing.name
    property alias text: words.text

    Layout.fillWidth: true
    spacing: 4

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 8

        Symbol {
            id: drawing

            anchors.verticalCenter: parent.verticalCenter
            color: remark.ink
            height: 18
            width: 18
        }

        BodyText {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            width: Math.min(implicitWidth, remark.width - drawing.width - 8)
        }
    }

    Caption {
        id: hintText

        horizontalAlignment: Text.AlignHCenter
        visible: text !== ""
        width: parent.width
    }
}
