// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "LogSection"

    function openLog() {
        open();
        press("Protokoll");
        compare(view.showLog, true);
    }

    function lines(from, to) {
        const made = [];
        for (let i = from; i < to; ++i)
            made.push("✓ JPG/IMG_" + i + ".JPG  (1 MB)");
        return made;
    }

    function logged() {
        const text = named("logText");
        return text ? text.getText(0, text.length).replace(/\u2029/g, "\n") : "";
    }

    function test_isClosedAtFirst() {
        open();
        shows("Protokoll");
        showsSymbol("list.bullet.rectangle");
        compare(view.showLog, false);
        hides("Noch nichts importiert");
        compare(told("Button", "Protokoll").checked, false);
    }

    function test_saysThatItIsEmpty() {
        openLog();
        shows("Noch nichts importiert");
        compare(told("Button", "Protokoll").checked, true);
        press("Protokoll");
        compare(view.showLog, false);
        hides("Noch nichts importiert");
    }

    function test_countsItsLines() {
        openLog();
        script.log("✓ JPG/A.JPG  (1 MB)");
        shows("Protokoll (1)");
        hides("Noch nichts importiert");
        script.log(lines(1, 1000));
        shows("Protokoll (500)");
    }

    function test_showsItsLines() {
        openLog();
        script.log("✓ JPG/A.JPG  (1 MB)");
        script.log("✗ <b>B</b>.JPG");
        tryVerify(() => logged() === "✓ JPG/A.JPG  (1 MB)\n✗ <b>B</b>.JPG");
        const text = named("logText");
        compare(text.readOnly, true);
        compare(text.font.family, Theme.monospace);
        text.selectAll();
        compare(text.selectedText.length, logged().length);
    }

    function test_dropsTheOldestLines() {
        openLog();
        script.log(lines(0, 500));
        tryVerify(() => logged() === lines(0, 500).join("\n"));
        script.log(lines(500, 503));
        tryVerify(() => logged() === lines(3, 503).join("\n"));
        script.log(lines(1000, 2000));
        tryVerify(() => logged() === lines(1500, 2000).join("\n"));
    }

    function test_keepsTheNewestLineInView() {
        openLog();
        script.log(lines(0, 100));
        const log = () => named("logView");
        tryVerify(() => log() && log().contentHeight > 2 * log().height);
        tryVerify(() => log().contentY === log().newest());
        script.log(lines(100, 120));
        const before = log().contentHeight;
        tryVerify(() => log().contentHeight > before);
        compare(log().contentY, log().newest());
    }

    function test_staysWhereTheUserHasScrolledTo() {
        openLog();
        script.log(lines(0, 100));
        const log = () => named("logView");
        tryVerify(() => log() && log().contentHeight > 2 * log().height);
        tryVerify(() => log().contentY === log().newest());
        const before = log().contentHeight;
        log().contentY = 100;
        script.log(lines(100, 120));
        tryVerify(() => log().contentHeight > before);
        compare(log().contentY, 100);

        log().contentY = log().newest();
        const then = log().contentHeight;
        script.log(lines(120, 140));
        tryVerify(() => log().contentHeight > then);
        compare(log().contentY, log().newest());
    }

    function test_keepsASelectionWhileLinesAreAdded() {
        openLog();
        script.log(lines(0, 10));
        tryVerify(() => logged() === lines(0, 10).join("\n"));
        named("logText").select(2, 8);
        script.log(lines(10, 20));
        tryVerify(() => logged() === lines(0, 20).join("\n"));
        compare(named("logText").selectedText, "JPG/IM");
    }
}
