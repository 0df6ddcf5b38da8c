// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts

/// A switch with what it means.
CardRow {
    id: row

    property string title
    property string caption
    property alias on: toggle.checked
    property alias mayChange: toggle.enabled

    signal toggled(bool on)

    least: 32

    Column {
        Layout.fillWidth: true
        spacing: 1

        BodyText {
            Accessible.ignored: true
            text: row.title
            width: parent.width
        }

        Caption {
            text: row.caption
            width: Math.min(parent.width, 540)
        }
    }

    Toggle {
        id: toggle

        Accessible.description: enabled ? row.caption : qsTr("Nicht verfügbar. %1").arg(row.caption)
        Accessible.name: row.title
        Layout.alignment: Qt.AlignVCenter

        onToggled: row.toggled(checked)
    }
}
