// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "Keyboard"

    readonly property var folder: ["RadioButton: Ordner", "RadioButton: SFTP", "EditableText: /bilder", "Button: Ändern …", "Button: Im Finder zeigen"]
    readonly property var layout: ["CheckBox: Nach Aufnahmetag ablegen", "CheckBox: Nach Dateityp trennen"]
    readonly property var bar: ["Button: Kamera und Zielordner neu einlesen"]

    /// All that Tab comes to, from the first control until it is there again.
    function tabOrder(key) {
        const order = [];
        for (let presses = 0; presses < 60; ++presses) {
            keyClick(key);
            const at = tree.focused(view);
            if (at === order[0])
                return order;
            if (at !== "")
                order.push(at);
        }
        return order;
    }

    function fromFirst(order) {
        const first = order.indexOf(folder[0]);
        return order.slice(first).concat(order.slice(0, first));
    }

    function test_reachesEveryControlInReadingOrder() {
        openWith([["A.JPG", 1e6, "2024-05-08"], ["B.JPG", 1e6, "2024-05-09"]]);
        click("CheckBox", "Nur ab einem bestimmten Tag");
        script.log("✓ A.JPG");
        press("Protokoll (1)");
        isEnabled("Button", "1 importieren", true);
        view.forceActiveFocus();
        const order = [...folder, ...layout, "CheckBox: Beim Verbinden derselben Kamera fehlende Dateien importieren", "CheckBox: Nur ab einem bestimmten Tag", "Slider: Nur ab einem bestimmten Tag", "Button: Protokoll (1)", "EditableText: Protokoll", ...bar, "Button: 1 importieren"];
        compare(fromFirst(tabOrder(Qt.Key_Tab)).join("\n"), order.join("\n"));
    }

    function test_goesBackTheSameWay() {
        open();
        const there = tabOrder(Qt.Key_Tab);
        view.forceActiveFocus();
        const back = tabOrder(Qt.Key_Backtab);
        compare(back.slice().sort(), there.slice().sort());
        compare(back.length, folder.length + layout.length + 3);
    }

    function test_reachesTheChoiceOfCamerasFirst() {
        openWith([["A.JPG", 1e6, "2024-05-08"]]);
        connect([["B.JPG", 1e6, "2024-05-08"]], "X100", "x100");
        has("ComboBox", "Kamera");
        view.forceActiveFocus();
        compare(tabOrder(Qt.Key_Tab).slice(0, 2), ["ComboBox: Kamera", "RadioButton: Ordner"]);
    }

    function test_reachesTheServersControls() {
        script.startsWithServer = true;
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        open();
        compare(tabOrder(Qt.Key_Tab).slice(0, 10), ["RadioButton: Ordner", "RadioButton: SFTP", "EditableText: Benutzer", "EditableText: Rechner", "EditableText: Ordner", "Button: Verbinden und prüfen", "EditableText: ssh-ed25519 AAAA bildkurier", "Button: Kopieren", "Button: Neuen Schlüssel erzeugen", "Button: Schlüssel übernehmen …"]);
    }

    function test_showsWhereItIs() {
        openWith([["A.JPG", 1e6, "2024-05-08"], ["B.JPG", 1e6, "2024-05-09"]]);
        click("CheckBox", "Nur ab einem bestimmten Tag");
        isEnabled("Button", "2 importieren".replace("2", "1"), true);
        view.forceActiveFocus();
        for (let presses = 0; presses < 11; ++presses) {
            keyClick(Qt.Key_Tab);
            let rings = 0;
            visit(root(), item => rings += item instanceof FocusRing ? 1 : 0);
            compare(rings, 1, tree.focused(view));
        }
    }

    function test_scrollsToWhereItIs() {
        open({
            height: 480
        });
        for (const control of tabOrder(Qt.Key_Tab)) {
            keyClick(Qt.Key_Tab);
            const item = view.Window.activeFocusItem;
            const top = item.mapToItem(view, 0, 0).y;
            verify(top >= 0 && top + Math.min(item.height, 100) <= view.height, control + " at " + top);
        }
    }

    function test_choosesTheServerWithAnArrow() {
        open();
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Right);
        shows("Benutzer");
        compare(told("RadioButton", "SFTP").checked, true);
        keyClick(Qt.Key_Left);
        shows("/bilder");
    }

    function test_worksControlsWithTheSpaceBar() {
        open();
        has("CheckBox", "Nach Aufnahmetag ablegen").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(script.stored("byDate"), "ja");
        has("Button", "Protokoll").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(view.showLog, true);
        has("RadioButton", "SFTP").forceActiveFocus();
        keyClick(Qt.Key_Space);
        shows("Benutzer");
    }

    function test_importsOnReturnWhereverItIs_data() {
        return [
            {
                tag: "switch",
                role: "CheckBox",
                control: "Nach Dateityp trennen"
            },
            {
                tag: "button",
                role: "Button",
                control: "Ändern …"
            },
            {
                tag: "text",
                role: "EditableText",
                control: "/bilder"
            }
        ];
    }

    function test_importsOnReturnWhereverItIs(row) {
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        isEnabled("Button", "1 importieren", true);
        has(row.role, row.control).forceActiveFocus();
        keyClick(Qt.Key_Return);
        tryCompare(script.model, "importing", true);
        compare(script.dialogs, 0);
    }

    function test_importsOnReturnAfterItsButtonIsGone() {
        const camera = openWith([["A.JPG", 10, "2024-05-09"], ["B.JPG", 10, "2024-05-09"]]);
        isEnabled("Button", "2 importieren", true);
        has("Button", "2 importieren").forceActiveFocus();
        keyClick(Qt.Key_Space);
        script.settle();
        press("Abbrechen");
        script.deliver(camera, 0);
        isEnabled("Button", "1 importieren", true);
        keyClick(Qt.Key_Return);
        tryCompare(script.model, "importing", true);
    }

    function test_importsNothingWhileItAsks() {
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        view.confirmNewKey = true;
        shows("Neuen Schlüssel erzeugen?");
        keyClick(Qt.Key_Return);
        compare(script.model.importing, false);
    }
}
