// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

/// A text to type, with its label.
CardRow {
    id: row

    property string label
    property alias placeholder: field.placeholderText
    property alias text: field.text

    signal edited(string text)
    signal accepted

    BodyText {
        Accessible.ignored: true
        Layout.preferredWidth: 110
        text: row.label
    }

    T.TextField {
        id: field

        Accessible.name: row.label
        Accessible.role: Accessible.EditableText
        Layout.fillWidth: true
        color: Theme.text
        font.pixelSize: Theme.fontSize
        implicitHeight: contentHeight + topPadding + bottomPadding
        leftPadding: 8
        padding: 5
        placeholderTextColor: Theme.secondary
        selectByMouse: true
        selectedTextColor: "#ffffff"
        selectionColor: Theme.prominent
        verticalAlignment: TextInput.AlignVCenter

        background: Rectangle {
            border.color: Theme.controlLine
            color: Theme.field
            radius: Theme.controlRadius

            FocusRing {
                shown: field.activeFocus
            }
        }

        // Not the window's default action as well.
        Keys.onEnterPressed: row.accepted()
        Keys.onReturnPressed: row.accepted()
        onTextEdited: row.edited(text)

        BodyText {
            Accessible.ignored: true
            anchors.fill: parent
            anchors.leftMargin: field.leftPadding
            anchors.rightMargin: field.rightPadding
            color: field.placeholderTextColor
            elide: Text.ElideRight
            text: field.placeholderText
            verticalAlignment: Text.AlignVCenter
            visible: field.text === "" && field.preeditText === ""
            wrapMode: Text.NoWrap
        }
    }
}
