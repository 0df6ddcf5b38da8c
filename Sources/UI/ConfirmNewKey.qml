// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Templates as T

/// Asks before a key is lost.
T.Popup {
    id: dialog

    readonly property string consequence: qsTr("Der bisherige Schlüssel wird ersetzt und muss danach auch auf dem Server ersetzt werden.")
    readonly property string question: qsTr("Neuen Schlüssel erzeugen?")
    required property bool shown

    signal confirmed
    signal closedByUser

    anchors.centerIn: parent
    closePolicy: T.Popup.CloseOnEscape
    focus: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    modal: true
    padding: 20
    visible: shown
    width: Math.min(380, parent ? parent.width - 40 : 380)

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.35)
    }

    background: Rectangle {
        objectName: "questionGround"
        border.color: Theme.controlLine
        color: Theme.card
        radius: 12
    }
    contentItem: Column {
        Accessible.description: dialog.consequence
        Accessible.name: dialog.question
        Accessible.role: Accessible.Dialog
        spacing: 10

        BodyText {
            font.pixelSize: 15
            width: parent.width
            font.weight: Font.DemiBold
            text: dialog.question
        }

        BodyText {
            color: Theme.secondary
            width: parent.width
            text: dialog.consequence
        }

        Flow {
            layoutDirection: Qt.RightToLeft
            spacing: 10
            topPadding: 6
            width: parent.width

            DestructiveButton {
                objectName: "confirmNewKey"
                text: qsTr("Neuen Schlüssel erzeugen")

                Keys.onEnterPressed: clicked()
                Keys.onReturnPressed: clicked()
                onClicked: dialog.confirmed()
            }

            PushButton {
                focus: true
                objectName: "keepKey"
                text: qsTr("Abbrechen")

                Keys.onEnterPressed: clicked()
                Keys.onReturnPressed: clicked()
                // So that it shows from the start that the keyboard works it.
                onActiveFocusChanged: if (activeFocus) focusReason = Qt.TabFocusReason
                onClicked: dialog.closedByUser()
            }
        }
    }

    onClosed: if (shown) closedByUser()
}
