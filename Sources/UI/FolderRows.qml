// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// The destination when it is a folder.
Column {
    id: rows

    required property string description
    required property bool needsChoice
    required property bool networked

    signal choose
    signal show

    width: parent ? parent.width : 0

    CardRow {
        Symbol {
            Layout.preferredHeight: 18
            Layout.preferredWidth: 18
            color: Theme.secondary
            name: "folder"
        }

        SelectableText {
            Layout.fillWidth: true
            objectName: "destination"
            text: rows.description
            wrapMode: TextEdit.WrapAnywhere
        }

        PushButton {
            text: qsTr("Ändern …")

            onClicked: rows.choose()
        }

        PushButton {
            symbol: "arrow.up.forward.app"
            symbolTrails: true
            text: qsTr("Im Finder zeigen")

            onClicked: rows.show()
        }
    }

    Notice {
        objectName: "needsChoice"
        symbol: "folder.badge.questionmark"
        text: qsTr("Bitte über „Ändern …“ einmal wählen. Die App merkt sich die Freigabe auch über einen Neustart.")
        title: qsTr("Zielordner noch nicht freigegeben")
        visible: rows.needsChoice
    }

    Notice {
        objectName: "onNetwork"
        text: qsTr("Der Import dauert dort ein Vielfaches und bricht eher ab. Besser erst auf eine lokale Platte laden und danach übertragen.")
        title: qsTr("Ziel liegt auf einer Netzwerkfreigabe")
        visible: rows.networked
    }
}
