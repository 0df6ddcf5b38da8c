// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// Says where one is in what is too long for the window.
T.ScrollBar {
    id: bar

    Accessible.ignored: true
    implicitWidth: 10
    minimumSize: 0.1
    padding: 2
    policy: size < 1 ? T.ScrollBar.AlwaysOn : T.ScrollBar.AlwaysOff
    visible: size < 1

    contentItem: Rectangle {
        color: Theme.secondary
        implicitWidth: 6
        opacity: bar.pressed || bar.hovered ? 0.8 : 0.4
        radius: 3
    }
}
