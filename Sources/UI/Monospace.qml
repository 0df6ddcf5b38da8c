// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
pragma Singleton
import QtQuick

/// The system's font of equally wide letters.
QtObject {
    readonly property string family: "monospace"
}
