// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// Something the user should know before an import.
CardRow {
    id: notice

    property string symbol: "exclamationmark.triangle"
    property string title
    property string text

    Rectangle {
        Accessible.description: notice.text
        Accessible.name: notice.title
        Accessible.role: Accessible.AlertMessage
        Layout.fillWidth: true
        color: Theme.warningTint
        implicitHeight: content.implicitHeight + 16
        radius: 7

        Symbol {
            id: drawing

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.top: content.top
            color: Theme.warning
            height: 20
            name: notice.symbol
            width: 20
        }

        Column {
            id: content

            anchors.left: drawing.right
            anchors.margins: 10
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            BodyText {
                color: Theme.warning
                font.weight: Font.DemiBold
                text: notice.title
                width: parent.width
            }

            Caption {
                color: Theme.text
                text: notice.text
                width: parent.width
            }
        }
    }
}
