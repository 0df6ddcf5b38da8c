// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// The new files of one type.
Rectangle {
    id: card

    required property typeTile tile
    required property color ink
    required property color tint

    Accessible.name: tile.label
    Accessible.role: Accessible.StaticText
    color: tint
    implicitHeight: content.implicitHeight + 14
    radius: 8

    Column {
        id: content

        anchors.left: parent.left
        anchors.margins: 9
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        RowLayout {
            spacing: 5
            width: parent.width

            BodyText {
                Accessible.ignored: true
                Layout.fillWidth: true
                color: card.ink
                elide: Text.ElideMiddle
                font.pixelSize: 12
                font.weight: Font.DemiBold
                objectName: "tileName"
                text: card.tile.name
                wrapMode: Text.NoWrap
            }

            Symbol {
                color: card.ink
                name: card.tile.symbol
                objectName: "tileSymbol"
            }
        }

        BodyText {
            Accessible.ignored: true
            font.weight: Font.Bold
            objectName: "tileCount"
            text: card.tile.count
        }

        Caption {
            Accessible.ignored: true
            objectName: "tileSize"
            text: card.tile.size
        }
    }
}
