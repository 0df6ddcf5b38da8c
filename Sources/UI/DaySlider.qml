// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// A place in a row of days.
T.Slider {
    id: slider

    required property string dayText
    required property int days
    required property real day

    Accessible.description: dayText
    Accessible.name: qsTr("Nur ab einem bestimmten Tag")
    Accessible.role: Accessible.Slider
    focusPolicy: Qt.StrongFocus
    from: 0
    implicitHeight: 28
    implicitWidth: 160
    snapMode: T.Slider.SnapAlways
    stepSize: 1
    to: Math.max(1, days - 1)
    // Follows both: a day that comes before its range would be cut.
    value: Math.min(day, to)

    background: Rectangle {
        color: Theme.groove
        height: 6
        radius: 3
        width: slider.availableWidth
        y: (slider.height - height) / 2

        Rectangle {
            color: Theme.text
            height: 6
            opacity: 0.9
            radius: 3
            width: slider.visualPosition * parent.width
        }
    }
    handle: Rectangle {
        border.color: Theme.dark ? "#ffffff" : "#a9a9b0"
        color: slider.pressed ? "#ececf0" : "#ffffff"
        implicitHeight: 26
        implicitWidth: 26
        radius: 13
        x: slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2

        FocusRing {
            corner: 13
            shown: slider.visualFocus
        }
    }
}
