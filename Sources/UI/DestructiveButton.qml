// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// A button behind which something is lost.
PushButton {
    ink: Theme.bad
}
