// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Smaller text that explains.
BodyText {
    color: Theme.secondary
    font.pixelSize: Theme.captionSize
}
