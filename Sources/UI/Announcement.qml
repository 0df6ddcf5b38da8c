// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Tells those who do not see of what is new: a notification that comes and goes, with nothing to
/// look at.
Item {
    id: announcement

    property string news

    Accessible.name: news
    Accessible.role: Accessible.Notification
    visible: shown.running

    onNewsChanged: if (news !== "") shown.restart()

    Timer {
        id: shown

        interval: 1000
    }
}
