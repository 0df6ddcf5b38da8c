// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// A quiet line in the middle of a card.
ColumnLayout {
    id: remark

    property alias hint: hintText.text
    property color ink: Theme.secondary
    property alias symbol: drawing.name
    property alias text: words.text

    spacing: 4

    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        spacing: 8

        Symbol {
            id: drawing

            Layout.preferredHeight: 18
            Layout.preferredWidth: 18
            color: remark.ink
        }

        BodyText {
            id: words

            color: Theme.secondary
        }
    }

    Caption {
        id: hintText

        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        visible: text !== ""
    }
}
