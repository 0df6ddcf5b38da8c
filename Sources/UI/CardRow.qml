// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts

/// One row of a card.
Item {
    id: row

    default property alias content: line.data
    /// Whether a line parts it from the row above.
    property bool parted: true
    property int padding: 9
    property alias spacing: line.spacing

    /// How high its contents are at least.
    property int least: 1

    readonly property int part: parted ? 1 : 0

    // A layout without height would never give its contents the width by which they know theirs.
    implicitHeight: part + Math.max(least, line.implicitHeight) + 2 * padding
    width: parent ? parent.width : 0

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: Theme.inset
        anchors.right: parent.right
        anchors.rightMargin: 1
        color: Theme.line
        height: 1
        visible: row.parted
    }

    RowLayout {
        id: line

        anchors.fill: parent
        anchors.bottomMargin: row.padding
        anchors.leftMargin: Theme.inset
        anchors.rightMargin: Theme.inset
        anchors.topMargin: row.part + row.padding
        spacing: 10
    }
}
