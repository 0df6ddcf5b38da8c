// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier
import Bildkurier.Test

TestCase {
    id: test

    property MainWindow window

    name: "MainWindow"

    function init() {
        failOnWarning(/.?/);
        script.begin();
        pages.forget();
        window = windows.createObject(null, {
            model: script.model,
            keys: script.keys,
            support: "bildkurier-test:support",
            privacy: "bildkurier-test:datenschutz"
        });
        tryVerify(() => window.active);
    }

    function cleanup() {
        window.destroy();
        wait(0);
    }

    function open() {
        keyClick(Qt.Key_H, Qt.AltModifier);
        const menu = window.menuBar.menus[0];
        tryCompare(menu, "opened", true);
        return menu;
    }

    function test_isCalledBildkurier() {
        compare(window.title, "Bildkurier");
        compare(window.objectName, "main");
    }

    function test_doesNotBecomeSmallerThanItsContents() {
        compare(window.width, 680);
        const content = findChild(window.contentItem, "content");
        compare(window.minimumWidth, content.leastWidth);
        compare(window.minimumHeight, content.leastHeight + window.menuBar.height);
        window.width = window.minimumWidth;
        window.height = window.minimumHeight;
        tryCompare(content, "height", content.leastHeight);
        compare(content.width, content.leastWidth);
        // As much of the form as two rows, with everything below it.
        const form = findChild(content, "form"), bar = findChild(content, "status").parent;
        verify(form.height >= 150);
        verify(bar.y >= form.height && bar.y + bar.height <= content.height);
    }

    function test_hasOneMenuWithTwoItems() {
        compare(window.menuBar.menus.length, 1);
        const menu = window.menuBar.menus[0];
        compare(menu.title.replace("&", ""), "Hilfe");
        compare(menu.count, 2);
        compare([menu.itemAt(0).text, menu.itemAt(1).text], ["Bildkurier Support", "Datenschutz"]);
    }

    function test_reachesItsMenuByTab() {
        const title = window.menuBar.contentChildren[0];
        for (let presses = 0; presses < 20 && !title.activeFocus; ++presses)
            keyClick(Qt.Key_Tab);
        compare(title.visualFocus, true);
        keyClick(Qt.Key_Space);
        tryCompare(window.menuBar.menus[0], "opened", true);
        keyClick(Qt.Key_Escape);
        tryCompare(window.menuBar.menus[0], "opened", false);
        keyClick(Qt.Key_Tab);
        tryVerify(() => !title.activeFocus && window.activeFocusItem !== null);
    }

    function test_opensItsWebPages_data() {
        return [
            {
                tag: "Bildkurier Support",
                page: "bildkurier-test:support",
                presses: 1
            },
            {
                tag: "Datenschutz",
                page: "bildkurier-test:datenschutz",
                presses: 2
            }
        ];
    }

    function test_opensItsWebPages(row) {
        open();
        for (let press = 0; press < row.presses; ++press)
            keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryCompare(pages, "opened", [row.page]);
    }

    WindowScript {
        id: script
    }

    OpenedPages {
        id: pages
    }

    Component {
        id: windows

        MainWindow {
        }
    }
}
