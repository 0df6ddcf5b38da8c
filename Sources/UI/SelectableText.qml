// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick

/// Text that can be selected and copied.
TextEdit {
    Accessible.name: text
    Accessible.readOnly: true
    Accessible.role: Accessible.EditableText
    activeFocusOnTab: true
    color: Theme.text
    font.pixelSize: Theme.fontSize
    readOnly: true
    selectByMouse: true
    selectedTextColor: "#ffffff"
    selectionColor: Theme.prominent
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap

    KeyNavigation.priority: KeyNavigation.BeforeItem

    FocusRing {
        corner: 2
        shown: parent.activeFocus
    }
}
