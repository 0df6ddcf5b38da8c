// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Bildkurier

/// A button with a text, a symbol, or both.
T.Button {
    id: button

    property bool prominent: false
    property string symbol
    property bool symbolTrails: false
    /// What it does, where no text says so.
    property string help

    property color ink: prominent ? "#ffffff" : Theme.text

    // The toolkit tells nobody whether a control works.
    Accessible.description: enabled ? "" : qsTr("Nicht verfügbar")
    Accessible.name: text !== "" ? text : help
    Accessible.role: Accessible.Button
    focusPolicy: Qt.StrongFocus
    font.pixelSize: Theme.fontSize
    hoverEnabled: true
    font.weight: prominent ? Font.DemiBold : Font.Normal
    implicitHeight: Math.max(28, implicitContentHeight + 10)
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: text !== "" ? 12 : 10
    opacity: enabled ? 1 : 0.55
    rightPadding: leftPadding

    background: Rectangle {
        border.color: button.prominent ? color : Theme.controlLine
        color: {
            if (button.prominent)
                return button.down ? Qt.darker(Theme.prominent, 1.2) : Theme.prominent;
            return button.down || button.hovered ? Theme.pressed : Theme.control;
        }
        radius: Theme.controlRadius

        FocusRing {
            shown: button.visualFocus
        }
    }
    contentItem: RowLayout {
        layoutDirection: button.symbolTrails ? Qt.RightToLeft : Qt.LeftToRight
        spacing: 6

        Symbol {
            Layout.preferredHeight: 15
            Layout.preferredWidth: 15
            color: button.ink
            name: button.symbol
            visible: name !== ""
        }

        BodyText {
            Accessible.ignored: true
            color: button.ink
            font: button.font
            text: button.text
            visible: text !== ""
            wrapMode: Text.NoWrap
        }
    }

    HoverHandler {
        cursorShape: Qt.ArrowCursor
    }

    Hint {
        shown: button.help !== "" && (button.hovered || button.visualFocus)
        text: button.help
    }
}
