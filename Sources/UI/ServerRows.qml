// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// The destination when it is on a server.
Column {
    id: rows

    required property string user
    required property string host
    required property string path
    required property bool checking
    required property bool connected
    required property string status
    required property string hostKey
    required property bool mismatch

    signal userEdited(string user)
    signal hostEdited(string host)
    signal pathEdited(string path)
    signal check
    signal forget

    width: parent ? parent.width : 0

    FieldRow {
        label: qsTr("Benutzer")
        //: Platzhalter: Benutzername auf dem Server
        placeholder: qsTr("quarzfeld")
        text: rows.user

        onAccepted: if (!rows.checking) rows.check()
        onEdited: text => rows.userEdited(text)
    }

    FieldRow {
        label: qsTr("Rechner")
        //: Platzhalter: Rechnername
        placeholder: qsTr("nas.local, IP oder rechner:port")
        text: rows.host

        onAccepted: if (!rows.checking) rows.check()
        onEdited: text => rows.hostEdited(text)
    }

    FieldRow {
        label: qsTr("Ordner")
        //: Platzhalter: Ordner auf dem Server
        placeholder: qsTr("/Users/quarzfeld/Bilder")
        text: rows.path

        onAccepted: if (!rows.checking) rows.check()
        onEdited: text => rows.pathEdited(text)
    }

    CardRow {
        Column {
            Layout.fillWidth: true
            spacing: 8

            RowLayout {
                spacing: 10
                width: parent.width

                PushButton {
                    enabled: !rows.checking
                    text: qsTr("Verbinden und prüfen")

                    onClicked: rows.check()
                }

                Spinner {
                    label: qsTr("Verbinden und prüfen")
                    objectName: "checking"
                    visible: rows.checking
                }

                Symbol {
                    Layout.alignment: Qt.AlignVCenter
                    color: rows.connected ? Theme.good : Theme.bad
                    name: rows.connected ? "checkmark.circle" : "xmark.circle"
                    objectName: "serverSymbol"
                    visible: rows.status !== ""
                }

                BodyText {
                    Accessible.role: Accessible.AlertMessage
                    Layout.fillWidth: true
                    color: rows.connected ? Theme.good : Theme.bad
                    objectName: "serverStatus"
                    text: rows.status

                    Announcement {
                        news: rows.status
                    }
                }
            }

            Caption {
                objectName: "hostKey"
                text: rows.hostKey
                visible: text !== ""
                width: parent.width
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            }

            PushButton {
                text: qsTr("Gespeicherten Server-Schlüssel vergessen")
                visible: rows.mismatch

                onClicked: rows.forget()
            }
        }
    }
}
