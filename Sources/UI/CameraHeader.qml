// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// The camera: what it is, what is on it, whether it is there.
Card {
    id: header

    required property string title
    required property string subtitle
    required property bool connected
    required property bool working
    required property list<string> cameras
    required property int selected

    signal chose(int index)
    signal passedReturn

    width: parent ? parent.width : 0

    CardRow {
        parted: false

        Rectangle {
            Accessible.ignored: true
            color: header.connected ? Theme.accentTint : Theme.groove
            implicitHeight: 44
            implicitWidth: 44
            radius: 9

            Symbol {
                anchors.centerIn: parent
                color: header.connected ? Theme.accent : Theme.secondary
                height: 30
                name: "camera"
                objectName: "cameraSymbol"
                opacity: header.connected ? 1 : 0.55
                width: 30
            }
        }

        Column {
            Layout.fillWidth: true
            spacing: 2

            BodyText {
                Accessible.role: Accessible.Heading
                font.pixelSize: 16
                font.weight: Font.DemiBold
                objectName: "cameraTitle"
                text: header.title
                width: parent.width
            }

            Caption {
                objectName: "cameraSubtitle"
                text: header.subtitle
                width: parent.width
            }
        }

        CameraPicker {
            Layout.maximumWidth: 200
            cameras: header.cameras
            selected: header.selected
            visible: header.cameras.length > 1

            onChose: index => header.chose(index)
            onPassedReturn: header.passedReturn()
        }

        Spinner {
            label: header.subtitle
            visible: header.working
        }

        Rectangle {
            Accessible.ignored: true
            color: header.connected ? Theme.connected : Theme.secondary
            implicitHeight: 8
            implicitWidth: 8
            radius: 4
            visible: !header.working
        }

        Caption {
            objectName: "connection"
            text: header.connected ? qsTr("Verbunden") : qsTr("Nicht verbunden")
            visible: !header.working
            wrapMode: Text.NoWrap
        }
    }
}
