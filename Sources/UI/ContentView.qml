// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Bildkurier

/// All that the window shows: a form, and the actions below it.
FocusScope {
    id: view

    required property ImportBridge model
    required property KeyBridge keys

    /// The size from which on everything has its room.
    readonly property int leastHeight: 454
    readonly property int leastWidth: 520

    property bool showLog: false
    property bool confirmNewKey: false

    implicitHeight: 1000
    implicitWidth: 680

    // The window's default action, unless what has the focus wants the key for itself.
    Keys.onEnterPressed: view.model.startImport()
    Keys.onReturnPressed: view.model.startImport()

    Form {
        id: form

        anchors.bottom: bar.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top

        CameraHeader {
            cameras: view.model.cameraNames
            connected: view.model.connected
            selected: view.model.selectedCamera
            subtitle: view.model.cameraSubtitle
            title: view.model.cameraTitle
            working: view.model.working

            onChose: index => view.model.selectedCamera = index
            onPassedReturn: view.model.startImport()
        }

        FormSection {
            title: qsTr("Ziel")

            CardRow {
                parted: false

                SegmentedChoice {
                    Layout.alignment: Qt.AlignHCenter
                    chosen: view.model.destination
                    label: qsTr("Ziel")
                    options: [qsTr("Ordner"), qsTr("SFTP")]

                    onChose: index => view.model.destination = index
                }
            }

            FolderRows {
                description: view.model.destDescription
                needsChoice: view.model.destNeedsChoice
                networked: view.model.destOnNetwork
                visible: view.model.destination === ImportBridge.Destination.Folder

                onChoose: view.model.chooseDest()
                onShow: view.model.showDestInFinder()
            }

            ServerRows {
                checking: view.model.sftpChecking
                connected: view.model.sftpConnected
                host: view.model.sftpHost
                hostKey: view.model.sftpHostKey
                mismatch: view.model.sftpHostKeyMismatch
                path: view.model.sftpPath
                status: view.model.sftpStatus
                user: view.model.sftpUser
                visible: view.model.destination === ImportBridge.Destination.Server

                onCheck: view.model.applySFTPDestination()
                onForget: view.model.forgetSFTPHostKey()
                onHostEdited: host => view.model.sftpHost = host
                onPathEdited: path => view.model.sftpPath = path
                onUserEdited: user => view.model.sftpUser = user
            }

            KeyRows {
                busy: view.keys.busy
                explanation: view.keys.explanation
                failed: view.keys.failed
                fingerprint: view.keys.fingerprint
                hasKey: view.keys.hasKey
                message: view.keys.message
                publicKey: view.keys.publicKey
                visible: view.model.destination === ImportBridge.Destination.Server

                onCopy: view.keys.copyPublicKey()
                onGenerate: view.keys.generate()
                onRemove: view.keys.removeKey()
                onReplace: view.confirmNewKey = true
                onTakeOver: view.keys.importKey()
            }

            ToggleRow {
                caption: qsTr("Unterordner JJJJ-MM-TT")
                on: view.model.byDate
                title: qsTr("Nach Aufnahmetag ablegen")

                onToggled: on => view.model.byDate = on
            }

            ToggleRow {
                caption: qsTr("Unterordner CR3, JPG, MP4 …")
                on: view.model.byType
                title: qsTr("Nach Dateityp trennen")

                onToggled: on => view.model.byType = on
            }
        }

        FormSection {
            title: qsTr("Automatisch nachziehen")

            ToggleRow {
                caption: view.model.autoImportCaption
                mayChange: view.model.mayChangeAutoImport
                on: view.model.autoImportEnabled
                parted: false
                title: qsTr("Beim Verbinden derselben Kamera fehlende Dateien importieren")

                onToggled: on => view.model.autoImportEnabled = on
            }
        }

        FormSection {
            title: qsTr("Zeitraum")

            DateRows {
                day: view.model.fromDayIndex
                days: view.model.dayCount
                filters: view.model.useFromDate
                fromDay: view.model.fromDay

                onDayChosen: index => view.model.fromDayIndex = index
                onFilterChosen: on => view.model.useFromDate = on
            }
        }

        FormSection {
            title: qsTr("Neu zu importieren")

            SummaryRow {
                count: view.model.newCount
                size: view.model.newSize
                status: view.model.status
                summary: view.model.summary
                tiles: view.model.tiles
            }
        }

        LogSection {
            id: log

            lines: view.showLog ? view.model.log : []
            open: view.showLog
            title: view.model.logTitle

            onOpenChanged: if (open) form.revealSoon(log)
            onToggled: view.showLog = !view.showLog
        }
    }

    ActionBar {
        id: bar

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: Theme.margin
        anchors.right: parent.right
        counts: view.model.progressCounts
        importTitle: view.model.importTitle
        importing: view.model.importing
        mayImport: view.model.mayImport
        news: view.model.news
        progress: view.model.progress
        speed: view.model.speed
        status: view.model.status

        onCancel: view.model.cancelImport()
        onReload: view.model.reload()
        onStart: view.model.startImport()
    }

    ConfirmNewKey {
        parent: T.Overlay.overlay
        shown: view.confirmNewKey

        onClosedByUser: view.confirmNewKey = false
        onConfirmed: {
            view.confirmNewKey = false;
            view.keys.generate();
        }
    }
}
