// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// What an import would load, or why there is nothing.
CardRow {
    id: row

    required property int summary
    required property string status
    required property string count
    required property string size
    required property list<typeTile> tiles

    padding: summary === ImportBridge.Summary.NewFiles ? 11 : 15
    parted: false

    Remark {
        symbol: "cable.connector.slash"
        text: qsTr("Keine Kamera verbunden")
        visible: row.summary === ImportBridge.Summary.NoCamera
    }

    Row {
        Layout.alignment: Qt.AlignHCenter
        spacing: 8
        visible: row.summary === ImportBridge.Summary.Working

        Spinner {
            label: row.status
        }

        BodyText {
            color: Theme.secondary
            objectName: "workingStatus"
            text: row.status
            width: Math.min(implicitWidth, row.width - 60)
        }
    }

    Remark {
        symbol: "folder.badge.questionmark"
        text: qsTr("Abgleich, sobald der Zielordner freigegeben ist")
        visible: row.summary === ImportBridge.Summary.NeedsChoice
    }

    Remark {
        hint: qsTr("Karte eingelegt? Sonst Kamera aus- und wieder einschalten und dann ↻ klicken.")
        symbol: "sdcard"
        text: qsTr("Die Kamera meldet keine Dateien")
        visible: row.summary === ImportBridge.Summary.NoFiles
    }

    Remark {
        ink: Theme.good
        symbol: "checkmark.circle.fill"
        text: qsTr("Alles bereits im Zielordner")
        visible: row.summary === ImportBridge.Summary.NothingNew
    }

    Column {
        Layout.fillWidth: true
        spacing: 8
        visible: row.summary === ImportBridge.Summary.NewFiles

        RowLayout {
            spacing: 10
            width: parent.width

            BodyText {
                font.pixelSize: 16
                font.weight: Font.Bold
                objectName: "newCount"
                text: row.count
            }

            Caption {
                Layout.fillWidth: true
                objectName: "newSize"
                text: row.size
            }
        }

        TileGrid {
            tiles: row.tiles
            width: parent.width
        }
    }
}
