// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// A word of help beside what it helps with.
T.ToolTip {
    id: hint

    required property bool shown

    delay: 600
    implicitHeight: implicitContentHeight + 10
    implicitWidth: implicitContentWidth + 16
    leftPadding: 8
    rightPadding: 8
    margins: 6
    topPadding: 5
    visible: shown
    x: parent ? parent.width - width : 0
    y: -height - 5

    background: Rectangle {
        border.color: Theme.controlLine
        color: Theme.card
        radius: 5
    }
    contentItem: Caption {
        color: Theme.text
        text: hint.text
        wrapMode: Text.NoWrap
    }
}
