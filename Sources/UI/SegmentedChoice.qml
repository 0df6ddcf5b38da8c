// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

/// One of a few, all in view.
Rectangle {
    id: choice

    required property list<string> options
    required property int chosen
    property string label

    signal chose(int index)

    /// By the keyboard: the focus goes along.
    function moveTo(index) {
        if (index < 0 || index >= options.length)
            return;
        chose(index);
        segments.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.name: label
    Accessible.role: Accessible.Grouping
    color: Theme.groove
    implicitHeight: 28
    implicitWidth: 80 * options.length
    radius: 7

    RowLayout {
        anchors.fill: parent
        anchors.margins: 2
        spacing: 0

        Repeater {
            id: segments

            model: choice.options

            T.RadioButton {
                id: option

                required property int index
                required property string modelData

                Accessible.checkable: true
                Accessible.checked: checked
                Accessible.name: text
                Accessible.role: Accessible.RadioButton
                Layout.fillHeight: true
                Layout.fillWidth: true
                checked: choice.chosen === index
                focusPolicy: Qt.StrongFocus
                text: modelData

                background: Rectangle {
                    color: option.checked ? Theme.chosen : "transparent"
                    radius: 5

                    FocusRing {
                        corner: 5
                        shown: option.visualFocus
                    }
                }
                contentItem: BodyText {
                    Accessible.ignored: true
                    color: option.checked ? Theme.text : Theme.secondary
                    horizontalAlignment: Text.AlignHCenter
                    text: option.text
                    verticalAlignment: Text.AlignVCenter
                }

                Keys.onLeftPressed: choice.moveTo(index - 1)
                Keys.onRightPressed: choice.moveTo(index + 1)
                onClicked: choice.chose(index)
            }
        }
    }
}
