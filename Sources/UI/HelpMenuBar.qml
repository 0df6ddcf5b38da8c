// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// The menu bar, whose one menu leads to the product's web pages.
T.MenuBar {
    id: bar

    signal supportChosen
    signal privacyChosen

    implicitHeight: implicitContentHeight
    implicitWidth: implicitContentWidth
    leftPadding: Theme.margin / 2

    background: Rectangle {
        color: Theme.window
    }
    contentItem: Row {
        Repeater {
            model: bar.contentModel
        }
    }
    delegate: T.MenuBarItem {
        id: title

        Accessible.name: qsTr("Hilfe")
        focusPolicy: Qt.TabFocus
        implicitHeight: 26
        implicitWidth: implicitContentWidth + 16
        leftPadding: 8

        background: Rectangle {
            color: title.highlighted || title.down ? Theme.pressed : "transparent"
            radius: Theme.controlRadius

            FocusRing {
                anchors.margins: 1
                shown: title.visualFocus
            }
        }
        contentItem: BodyText {
            Accessible.ignored: true
            text: qsTr("Hilfe")
            verticalAlignment: Text.AlignVCenter
        }
    }

    HelpMenu {
        title: qsTr("&Hilfe")

        HelpItem {
            text: qsTr("Bildkurier Support")

            onTriggered: bar.supportChosen()
        }

        HelpItem {
            //: Hilfe-Menü: Datenschutzerklärung auf der Website (nicht die Systemeinstellung)
            text: qsTr("Datenschutz")

            onTriggered: bar.privacyChosen()
        }
    }
}
