// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtQuick.Layouts
import Bildkurier

/// Which days to import.
Column {
    id: rows

    required property bool filters
    required property string fromDay
    required property int days
    required property real day

    signal filterChosen(bool on)
    signal dayChosen(real index)

    width: parent ? parent.width : 0

    ToggleRow {
        caption: qsTr("Ältere Aufnahmen werden übersprungen")
        on: rows.filters
        parted: false
        title: qsTr("Nur ab einem bestimmten Tag")

        onToggled: on => rows.filterChosen(on)
    }

    CardRow {
        padding: 14
        visible: rows.filters && rows.days > 0

        Symbol {
            Layout.preferredHeight: 18
            Layout.preferredWidth: 18
            color: Theme.secondary
            name: "calendar"
        }

        BodyText {
            Layout.fillWidth: rows.days === 1
            objectName: "fromDay"
            text: rows.fromDay
        }

        DaySlider {
            Layout.fillWidth: true
            day: rows.day
            dayText: rows.fromDay
            days: rows.days
            visible: rows.days > 1

            onMoved: rows.dayChosen(value)
        }

        Caption {
            objectName: "singleDay"
            text: qsTr("Auf der Karte gibt es nur diesen einen Aufnahmetag.")
            visible: rows.days === 1
        }
    }
}
