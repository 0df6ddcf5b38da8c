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

        RowLayout {
            id: content

            anchors.left: parent.left
            anchors.margins: 10
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            Symbol {
                Layout.alignment: Qt.AlignTop
                Layout.preferredHeight: 20
                Layout.preferredWidth: 20
                color: Theme.warning
                name: notice.symbol
            }

            ColumnLayout {
                spacing: 1

                BodyText {
                    Layout.fillWidth: true
                    color: Theme.warning
                    font.weight: Font.DemiBold
                    text: notice.title
                }

                Caption {
                    Layout.fillWidth: true
                    color: Theme.text
                    text: notice.text
                }
            }
        }
    }
}
