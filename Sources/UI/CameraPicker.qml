// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Bildkurier

/// Which of several cameras.
T.ComboBox {
    id: picker

    required property list<string> cameras
    required property int selected

    signal chose(int index)
    /// Return was pressed, and not to choose.
    signal passedReturn

    function takeReturn(event: KeyEvent) {
        event.accepted = !popup.visible;
        if (event.accepted)
            passedReturn();
    }

    Accessible.description: displayText
    Accessible.name: qsTr("Kamera")
    Accessible.role: Accessible.ComboBox
    currentIndex: selected
    focusPolicy: Qt.StrongFocus
    font.pixelSize: Theme.fontSize
    hoverEnabled: true
    implicitHeight: 28
    implicitWidth: Math.min(200, implicitContentWidth + leftPadding + rightPadding)
    leftPadding: 10
    model: cameras
    rightPadding: 28

    background: Rectangle {
        border.color: Theme.controlLine
        color: picker.down || picker.hovered ? Theme.pressed : Theme.control
        radius: Theme.controlRadius

        FocusRing {
            shown: picker.visualFocus
        }
    }
    contentItem: BodyText {
        Accessible.ignored: true
        elide: Text.ElideMiddle
        text: picker.displayText
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.NoWrap
    }
    delegate: T.ItemDelegate {
        id: entry

        required property int index
        required property string modelData

        Accessible.name: text
        Accessible.role: Accessible.ListItem
        Accessible.selectable: true
        Accessible.selected: highlighted
        highlighted: picker.highlightedIndex === index
        implicitHeight: 28
        text: modelData
        width: ListView.view ? ListView.view.width : 0

        background: Rectangle {
            color: entry.highlighted ? Theme.prominent : "transparent"
            radius: 5
        }
        contentItem: BodyText {
            Accessible.ignored: true
            color: entry.highlighted ? "#ffffff" : Theme.text
            elide: Text.ElideMiddle
            leftPadding: 8
            text: entry.text
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
        }
    }
    indicator: Symbol {
        color: Theme.secondary
        height: 14
        name: "chevron.down"
        width: 14
        x: picker.width - width - 8
        y: (picker.height - height) / 2
    }
    popup: T.Popup {
        implicitHeight: contentItem.implicitHeight + 8
        padding: 4
        width: Math.max(picker.width, 200)
        x: picker.width - width
        y: picker.height + 4

        background: Rectangle {
            border.color: Theme.controlLine
            color: Theme.card
            radius: 8
        }
        contentItem: ListView {
            Accessible.name: picker.Accessible.name
            Accessible.role: Accessible.List
            clip: true
            currentIndex: picker.highlightedIndex
            implicitHeight: Math.min(contentHeight, 240)
            model: picker.delegateModel
        }
    }

    // It would keep the key to itself.
    Keys.onEnterPressed: event => takeReturn(event)
    Keys.onReturnPressed: event => takeReturn(event)
    onActivated: index => chose(index)
    // With new entries the first one would be current.
    onModelChanged: currentIndex = Qt.binding(() => selected)
}
