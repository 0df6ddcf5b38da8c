// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Something is going on. Stands still, and costs nothing, when it is not shown.
Item {
    id: spinner

    property string label: qsTr("Arbeitet")

    Accessible.name: label
    Accessible.role: Accessible.Animation
    implicitHeight: 16
    implicitWidth: 16

    Item {
        id: wheel

        anchors.fill: parent

        Repeater {
            model: 8

            Rectangle {
                id: spoke

                required property int index

                color: Theme.secondary
                height: 4.5
                opacity: 0.15 + 0.12 * spoke.index
                radius: 1
                transformOrigin: Item.Bottom
                width: 2
                x: 7
                y: 0.5

                transform: Rotation {
                    angle: 45 * spoke.index
                    origin.x: 1
                    origin.y: 7.5
                }
            }
        }
    }

    Timer {
        interval: 100
        repeat: true
        running: spinner.visible && spinner.Window.visibility !== Window.Hidden && spinner.Window.visibility !== Window.Minimized

        onTriggered: wheel.rotation = (wheel.rotation + 45) % 360
    }
}
