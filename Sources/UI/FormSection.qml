// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// A card under its title.
Column {
    id: section

    default property alias rows: card.rows
    property string title

    Accessible.name: title
    Accessible.role: Accessible.Grouping
    spacing: 4
    width: parent ? parent.width : 0

    BodyText {
        Accessible.role: Accessible.Heading
        font.weight: Font.DemiBold
        text: section.title
        visible: text !== ""
        width: parent.width - Theme.inset
        x: Theme.inset
    }

    Card {
        id: card

        width: parent.width
    }
}
