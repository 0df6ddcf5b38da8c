// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Rows that belong together, with lines between them.
Rectangle {
    id: card

    default property alias rows: column.data

    border.color: Theme.line
    color: Theme.card
    implicitHeight: column.implicitHeight
    radius: Theme.radius

    Column {
        id: column

        width: parent.width
    }
}
