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

    function test_reachesTheServersControls_data() {
        const fields = ["EditableText: Benutzer", "EditableText: Rechner", "EditableText: Ordner", "Button: Verbinden und prüfen"];
        const ownKey = ["EditableText: ssh-ed25519 AAAA bildkurier", "Button: Kopieren", "Button: Neuen Schlüssel erzeugen", "Button: Schlüssel übernehmen …", "Button: Schlüssel der App löschen"];
        return [
            {
                tag: "with a key",
                key: "ssh-ed25519 AAAA bildkurier",
                order: fields.concat(ownKey)
            },
            {
                tag: "without a key",
                key: "",
                order: fields.concat(["Button: Schlüssel erzeugen", "Button: Schlüssel übernehmen …"])
            },
            {
                tag: "with another server's key",
                key: "ssh-ed25519 AAAA bildkurier",
                mismatch: true,
                order: fields.concat(["Button: Gespeicherten Server-Schlüssel vergessen"], ownKey)
            }
        ];
    }

    function test_reachesTheServersControls(row) {
        script.startsWithServer = true;
        script.publicKey = row.key;
        open();
        for (const key of row.mismatch ? ["SHA256:einer", "SHA256:anderer"] : []) {
            script.showServerKey(key);
            press("Verbinden und prüfen");
            script.settle();
        }
        if (row.mismatch)
            has("Button", "Gespeicherten Server-Schlüssel vergessen");
        view.forceActiveFocus();
        const order = ["RadioButton: Ordner", "RadioButton: SFTP", ...row.order, ...layout, "CheckBox: Nur ab einem bestimmten Tag", "Button: Protokoll", ...bar];
        compare(fromFirst(tabOrder(Qt.Key_Tab)).join("\n"), order.join("\n"));
    }

    function rings() {
        let found = 0;
        visit(root(), item => found += item instanceof FocusRing ? 1 : 0);
        return found;
    }

    function openFolder() {
        openWith([["A.JPG", 1e6, "2024-05-08"], ["B.JPG", 1e6, "2024-05-09"]]);
        script.model.useFromDate = true;
        isEnabled("Button", "1 importieren", true);
    }

    function openServer() {
        script.startsWithServer = true;
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        openWith([["A.JPG", 1e6, "2024-05-08"]]);
        isEnabled("Button", "1 importieren", true);
    }

    function openLog() {
        for (let i = 0; i < 60; ++i)
            script.log("✓ IMG_" + i + ".JPG");
        view.showLog = true;
        has("EditableText", "Protokoll");
        tryVerify(isLaidOut);
    }

    function test_showsWhereItIs_data() {
        return [
            {
                tag: "folder",
                begin: openFolder,
                stops: 14
            },
            {
                tag: "server",
                begin: openServer,
                stops: 19
            }
        ];
    }

    function test_showsWhereItIs(row) {
        row.begin();
        openLog();
        view.forceActiveFocus();
        const stops = tabOrder(Qt.Key_Tab);
        compare(stops.length, row.stops, stops.join("\n"));
        for (let press = 0; press < stops.length; ++press) {
            keyClick(Qt.Key_Tab);
            compare(rings(), 1, tree.focused(view));
        }
    }

    function test_showsWhereItIsInAQuestion() {
        openServer();
        press("Neuen Schlüssel erzeugen");
        tryVerify(() => named("keepKey") !== null && named("keepKey").activeFocus);
        for (const answer of ["Button: Abbrechen", "Button: Neuen Schlüssel erzeugen"]) {
            compare(tree.focused(view), answer);
            compare(rings(), 1, answer);
            keyClick(Qt.Key_Tab);
        }
    }

    /// Where the item is in the form's view, in which all of it is to be seen.
    function isInView(item, what) {
        const form = named("form");
        const top = item.mapToItem(form, 0, 0).y;
        verify(top >= -0.5 && top + item.height <= form.height + 0.5, what + " at " + top + ", " + item.height + " high, in " + form.height);
    }

    function isWithinBounds() {
        const form = named("form");
        verify(form.contentY >= 0 && form.contentY <= form.contentHeight - form.height, "at " + form.contentY);
    }

    function test_scrollsToWhereItIs_data() {
        return test_showsWhereItIs_data();
    }

    function test_scrollsToWhereItIs(row) {
        row.begin();
        view.height = 480;
        openLog();
        view.forceActiveFocus();
        const bar = named("status").parent;
        for (const control of tabOrder(Qt.Key_Tab)) {
            keyClick(Qt.Key_Tab);
            const item = view.Window.activeFocusItem;
            isWithinBounds();
            if (item.mapToItem(bar, 0, 0).y < 0)
                isInView(item === named("logText") ? named("logView") : item, control);
        }
    }

    function test_staysWhereItIsWhenTheLogIsClicked() {
        openFolder();
        view.height = 480;
        openLog();
        const form = named("form"), log = named("logView");
        form.contentY = form.contentHeight - form.height - 60;
        log.contentY = 100;
        const before = form.contentY;
        mouseClick(log, 20, 60);
        compare(named("logText").activeFocus, true);
        compare(form.contentY, before);
        compare(log.contentY, 100);
    }

    function test_letsHalfAControlBeClicked() {
        open({
            height: 480
        });
        const form = named("form"), disclosure = has("Button", "Protokoll");
        tryVerify(isLaidOut);
        form.contentY = disclosure.mapToItem(form.contentItem, 0, 0).y + 15 - form.height;
        const before = form.contentY;
        const place = disclosure.mapToItem(view, 40, 8);
        mousePress(view, place.x, place.y);
        compare(form.contentY, before);
        // A hand is never quite still.
        mouseMove(view, place.x + 1, place.y, -1, Qt.LeftButton);
        mouseRelease(view, place.x, place.y);
        compare(view.showLog, true);
    }

    function test_scrollsToALogThatIsOpened() {
        openFolder();
        view.height = 480;
        for (let i = 0; i < 60; ++i)
            script.log("✓ IMG_" + i + ".JPG");
        const disclosure = has("Button", "Protokoll (60)");
        disclosure.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        has("EditableText", "Protokoll");
        tryVerify(() => isLaidOut() && named("logView").height === 180);
        const form = named("form");
        tryVerify(() => form.contentY === form.contentHeight - form.height);
        isInView(named("logView"), "the log");
    }

    function test_scrollsTheLog() {
        openFolder();
        openLog();
        const log = named("logView");
        tryVerify(() => log.contentHeight > 2 * log.height && log.contentY === log.newest());
        named("logText").forceActiveFocus();
        for (const [key, steps] of [[Qt.Key_Up, -20], [Qt.Key_PageUp, 20 - log.height], [Qt.Key_Down, 20]]) {
            const before = log.contentY;
            keyClick(key);
            compare(log.contentY, before + steps);
        }
        keyClick(Qt.Key_Home);
        compare(log.contentY, 0);
        keyClick(Qt.Key_End);
        compare(log.contentY, log.newest());
    }

    function test_choosesTheServerWithAnArrow() {
        open();
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Right);
        shows("Benutzer");
        compare(told("RadioButton", "SFTP").checked, true);
        compare(tree.focused(view), "RadioButton: SFTP");
        compare(rings(), 1);
        keyClick(Qt.Key_Right);
        compare(tree.focused(view), "RadioButton: SFTP");
        keyClick(Qt.Key_Left);
        shows("/bilder");
        compare(tree.focused(view), "RadioButton: Ordner");
        for (let press = 0; press < 2; ++press) {
            keyClick(Qt.Key_Space);
            compare(told("RadioButton", "Ordner").checked, true);
            compare(told("RadioButton", "SFTP").checked, false);
        }
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
            },
            {
                tag: "slider",
                role: "Slider",
                control: "Nur ab einem bestimmten Tag"
            },
            {
                tag: "log",
                role: "EditableText",
                control: "Protokoll"
            },
            {
                tag: "cameras",
                role: "ComboBox",
                control: "Kamera"
            },
            {
                tag: "key",
                role: "EditableText",
                control: "ssh-ed25519 AAAA bildkurier",
                begin: () => script.model.destination = ImportBridge.Destination.Server
            }
        ];
    }

    function test_importsOnReturnWhereverItIs(row) {
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        openFolder();
        openLog();
        connect([["C.JPG", 1e6, "2024-05-09"]], "X100", "x100");
        if (row.begin) {
            row.begin();
            press("Verbinden und prüfen");
            script.settle();
        }
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
