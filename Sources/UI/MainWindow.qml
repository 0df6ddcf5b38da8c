// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T
import Bildkurier

/// The application's only window.
T.ApplicationWindow {
    id: window

    required property ImportBridge model
    required property KeyBridge keys
    required property url support
    property alias confirmsNewKey: content.confirmNewKey
    property alias showsLog: content.showLog
    required property url privacy

    color: Theme.window
    // With room for what the desktop puts round it.
    height: Math.min(1000, Screen.desktopAvailableHeight - 40)
    minimumHeight: content.leastHeight + menuBar.implicitHeight
    minimumWidth: content.leastWidth
    objectName: "main"
    title: "Bildkurier"
    visible: true
    width: 680

    menuBar: HelpMenuBar {
        onPrivacyChosen: Qt.openUrlExternally(window.privacy)
        onSupportChosen: Qt.openUrlExternally(window.support)
    }

    Shortcut {
        sequences: ["Ctrl+Q", "Ctrl+W"]

        onActivated: window.close()
    }

    ContentView {
        id: content

        anchors.fill: parent
        focus: true
        keys: window.keys
        model: window.model
        objectName: "content"
    }
}
