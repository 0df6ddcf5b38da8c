// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts

/// A card under its title.
ColumnLayout {
    id: section

    default property alias rows: card.rows
    property string title

    Layout.fillWidth: true
    Accessible.name: title
    Accessible.role: Accessible.Grouping
    spacing: 4

    BodyText {
        Accessible.role: Accessible.Heading
        Layout.fillWidth: true
        Layout.leftMargin: Theme.inset
        font.weight: Font.DemiBold
        text: section.title
        visible: text !== ""
    }

    Card {
        id: card

        Layout.fillWidth: true
    }
}
