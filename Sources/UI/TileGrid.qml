// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma ComponentBehavior: Bound
import QtQuick
import Bildkurier

/// One tile per type, as many in a row as there is room for.
Grid {
    id: grid

    required property list<typeTile> tiles

    readonly property real tileWidth: (width - (columns - 1) * spacing) / columns

    columns: Math.max(1, Math.floor((width + spacing) / (125 + spacing)))
    spacing: 7

    Repeater {
        model: grid.tiles

        Tile {
            required property int index
            required property typeTile modelData

            ink: Theme.tileTexts[index % Theme.tileTexts.length]
            tile: modelData
            tint: Theme.tileTints[index % Theme.tileTints.length]
            width: grid.tileWidth
        }
    }
}
