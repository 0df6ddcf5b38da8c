// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// The application's own key for servers.
CardRow {
    id: rows

    required property bool hasKey
    required property string publicKey
    required property string fingerprint
    required property string explanation
    required property string message
    required property bool failed
    required property bool busy

    signal copy
    signal generate
    signal replace
    signal takeOver
    signal remove

    Column {
        Layout.fillWidth: true
        spacing: 8

        RowLayout {
            spacing: 6
            width: parent.width

            Symbol {
                Layout.preferredHeight: 15
                Layout.preferredWidth: 15
                color: Theme.text
                name: "key.fill"
            }

            BodyText {
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                font.weight: Font.DemiBold
                text: qsTr("Schlüssel der App")
                wrapMode: Text.NoWrap
            }
        }

        Caption {
            objectName: "keyExplanation"
            text: rows.explanation
            visible: !rows.hasKey
            width: parent.width
        }

        RowLayout {
            spacing: 10
            visible: rows.publicKey !== ""
            width: parent.width

            KeyLine {
                Layout.fillWidth: true
                objectName: "publicKey"
                text: rows.publicKey
            }

            PushButton {
                text: qsTr("Kopieren")

                onClicked: rows.copy()
            }
        }

        Caption {
            objectName: "keyFingerprint"
            text: rows.fingerprint
            visible: text !== ""
            width: parent.width
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        }

        Caption {
            objectName: "keyInstruction"
            width: parent.width
            text: qsTr("Diesen öffentlichen Schlüssel auf dem Server als eine Zeile in ~/.ssh/authorized_keys des Benutzers eintragen (bei SFTPGo im Benutzer unter „Public keys“). Die App meldet sich nur damit an, nie mit Passwort.")
            visible: rows.publicKey !== ""
        }

        Flow {
            spacing: 10
            width: parent.width

            PushButton {
                enabled: !rows.busy
                text: qsTr("Schlüssel erzeugen")
                visible: !rows.hasKey

                onClicked: rows.generate()
            }

            PushButton {
                enabled: !rows.busy
                text: qsTr("Neuen Schlüssel erzeugen")
                visible: rows.hasKey

                onClicked: rows.replace()
            }

            PushButton {
                enabled: !rows.busy
                text: qsTr("Schlüssel übernehmen …")

                onClicked: rows.takeOver()
            }

            PushButton {
                enabled: !rows.busy
                text: qsTr("Schlüssel der App löschen")
                visible: rows.hasKey

                onClicked: rows.remove()
            }

            Item {
                height: 28
                visible: rows.busy
                width: 16

                Spinner {
                    anchors.centerIn: parent
                    label: qsTr("Schlüssel der App")
                    objectName: "keyBusy"
                }
            }
        }

        Caption {
            Accessible.role: Accessible.AlertMessage
            color: rows.failed ? Theme.bad : Theme.good
            objectName: "keyMessage"
            text: rows.message
            visible: text !== ""
            width: parent.width

            Announcement {
                news: rows.message
            }
        }
    }
}
