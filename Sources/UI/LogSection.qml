// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Bildkurier

/// The log, behind its title until it is opened.
Card {
    id: section

    required property string title
    /// Needed while it is open.
    required property list<string> lines
    required property bool open

    signal toggled

    width: parent ? parent.width : 0

    CardRow {
        padding: 0
        parted: false

        T.AbstractButton {
            id: disclosure

            Accessible.checkable: true
            Accessible.checked: section.open
            Accessible.name: text
            Accessible.role: Accessible.Button
            Layout.fillWidth: true
            focusPolicy: Qt.StrongFocus
            implicitHeight: 33
            text: section.title

            background: Item {
                FocusRing {
                    anchors.leftMargin: -8
                    anchors.margins: 2
                    anchors.rightMargin: -8
                    shown: disclosure.visualFocus
                }
            }
            contentItem: RowLayout {
                spacing: 8

                Symbol {
                    Layout.preferredHeight: 12
                    Layout.preferredWidth: 12
                    color: Theme.secondary
                    name: section.open ? "chevron.down" : "chevron.right"
                }

                Symbol {
                    color: Theme.secondary
                    name: "list.bullet.rectangle"
                }

                BodyText {
                    Accessible.ignored: true
                    Layout.fillWidth: true
                    text: section.title
                }
            }

            onClicked: section.toggled()
        }
    }

    LogView {
        lines: section.lines
        visible: section.open
    }
}
