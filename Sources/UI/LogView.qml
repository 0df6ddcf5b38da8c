// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Bildkurier

/// The lines of the log. Stays at the newest unless the user has scrolled away from it.
CardRow {
    id: row

    required property list<string> lines

    BodyText {
        Layout.fillWidth: true
        color: Theme.secondary
        text: qsTr("Noch nichts importiert")
        visible: row.lines.length === 0
    }

    Item {
        Layout.fillWidth: true
        Layout.preferredHeight: Math.min(180, view.contentHeight)
        visible: row.lines.length > 0

        Flickable {
            id: view

            property bool follows: true

            function newest(): real {
                return Math.max(0, contentHeight - height);
            }

            function followNewest() {
                if (follows)
                    contentY = newest();
            }

            anchors.fill: parent
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            contentHeight: text.implicitHeight
            contentWidth: width
            objectName: "logView"

            T.ScrollBar.vertical: SlimScrollBar {
            }

            onContentHeightChanged: followNewest()
            onContentYChanged: follows = contentY >= newest() - 1
            onHeightChanged: followNewest()

            TextEdit {
                id: text

                Accessible.multiLine: true
                Accessible.name: qsTr("Protokoll")
                Accessible.readOnly: true
                Accessible.role: Accessible.EditableText
                activeFocusOnTab: true
                color: Theme.text
                font.family: Theme.monospace
                font.pixelSize: Theme.captionSize
                objectName: "logText"
                readOnly: true
                rightPadding: 12
                selectByMouse: true
                selectedTextColor: "#ffffff"
                selectionColor: Theme.prominent
                textFormat: TextEdit.PlainText
                width: view.width
                wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere

                Keys.onPressed: event => {
                    const line = 20, page = view.height - line;
                    const steps = ({
                            [Qt.Key_Down]: line,
                            [Qt.Key_End]: view.contentHeight,
                            [Qt.Key_Home]: -view.contentHeight,
                            [Qt.Key_PageDown]: page,
                            [Qt.Key_PageUp]: -page,
                            [Qt.Key_Up]: -line
                        });
                    if (event.key in steps) {
                        view.contentY = Math.max(0, Math.min(view.newest(), view.contentY + steps[event.key]));
                        event.accepted = true;
                    }
                }
            }

            LogText {
                document: text.textDocument
                lines: row.lines
            }
        }

        FocusRing {
            corner: 2
            shown: text.activeFocus
        }
    }
}
