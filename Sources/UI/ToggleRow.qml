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

    ColumnLayout {
        spacing: 1

        BodyText {
            Accessible.ignored: true
            Layout.fillWidth: true
            text: row.title
        }

        Caption {
            Layout.fillWidth: true
            Layout.maximumWidth: 540
            text: row.caption
        }
    }

    Toggle {
        id: toggle

        Accessible.description: row.caption
        Accessible.name: row.title
        Layout.alignment: Qt.AlignVCenter

        onToggled: row.toggled(checked)
    }
}
