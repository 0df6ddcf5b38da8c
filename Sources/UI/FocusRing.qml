// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Shows which control the keyboard works.
Rectangle {
    required property bool shown
    property real corner: Theme.controlRadius

    anchors.fill: parent
    anchors.margins: -3
    border.color: Theme.accent
    border.width: 2
    color: "transparent"
    radius: corner + 3
    visible: shown
}
