// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// A switch.
T.Switch {
    id: toggle

    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.role: Accessible.CheckBox
    focusPolicy: Qt.StrongFocus
    implicitHeight: 20
    implicitWidth: 36
    opacity: enabled ? 1 : 0.5

    indicator: Rectangle {
        color: toggle.checked ? Theme.accent : Theme.switchedOff
        implicitHeight: 20
        implicitWidth: 36
        radius: 10

        Rectangle {
            color: "#ffffff"
            height: 16
            radius: 8
            width: 16
            x: toggle.checked ? 18 : 2
            y: 2

            Behavior on x {
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            corner: 10
            shown: toggle.visualFocus
        }
    }
}
