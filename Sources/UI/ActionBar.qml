// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Bildkurier

/// What is going on, and the button that sets it going.
Column {
    id: bar

    required property string status
    /// What of it is to be read out.
    required property string news
    required property bool importing
    required property real progress
    required property string counts
    required property speedGauge speed
    required property string importTitle
    required property bool mayImport

    signal cancel
    signal start
    signal reload

    spacing: 8

    Rectangle {
        color: Theme.line
        height: 1
        width: parent.width
    }

    BodyText {
        Accessible.role: Accessible.StatusBar
        color: Theme.secondary
        elide: Text.ElideRight
        maximumLineCount: 8
        objectName: "status"
        text: bar.status
        topPadding: 2
        width: parent.width

        Announcement {
            news: bar.news
        }
    }

    T.ProgressBar {
        id: progressBar

        Accessible.name: bar.status
        Accessible.role: Accessible.ProgressBar
        implicitHeight: 5
        objectName: "progress"
        value: bar.progress
        visible: bar.importing
        width: parent.width

        background: Rectangle {
            color: Theme.line
            radius: 2.5
        }
        contentItem: Item {
            Rectangle {
                color: Theme.accent
                height: parent.height
                radius: 2.5
                width: progressBar.visualPosition * parent.width
            }
        }
    }

    SpeedMeterView {
        reading: bar.speed
        visible: bar.importing
        width: parent.width
    }

    RowLayout {
        spacing: 5
        width: parent.width

        BodyText {
            color: Theme.secondary
            font.family: Theme.monospace
            font.pixelSize: Theme.captionSize + 1
            objectName: "counts"
            text: bar.counts
            visible: bar.importing
            wrapMode: Text.NoWrap
        }

        BodyText {
            Layout.fillWidth: true
            color: Theme.secondary
            elide: Text.ElideRight
            font.family: Theme.monospace
            font.pixelSize: Theme.captionSize + 1
            objectName: "transferring"
            text: qsTr("· überträgt zum Ziel …")
            visible: bar.importing
            wrapMode: Text.NoWrap
        }

        Item {
            Layout.fillWidth: true
            visible: !bar.importing
        }

        PushButton {
            objectName: "cancel"
            text: qsTr("Abbrechen")
            visible: bar.importing

            onClicked: bar.cancel()
        }

        PushButton {
            help: qsTr("Kamera und Zielordner neu einlesen")
            objectName: "reload"
            symbol: "arrow.clockwise"

            onClicked: bar.reload()
        }

        PushButton {
            enabled: bar.mayImport
            objectName: "import"
            prominent: true
            symbol: "square.and.arrow.down"
            text: bar.importTitle
            visible: !bar.importing

            onClicked: bar.start()
        }
    }
}
