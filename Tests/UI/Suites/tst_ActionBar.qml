// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "ActionBar"

    function test_waitsForACamera() {
        open();
        compare(named("status").text, "Suche Kamera … (einschalten und per USB verbinden)");
        showsSymbol("square.and.arrow.down");
        isEnabled("Button", "Importieren", false);
        compare(told("Button", "Importieren").description, "Nicht verfügbar");
        hasNo("Button", "Abbrechen");
        hasNo("ProgressBar", named("status").text);
        hides("· überträgt zum Ziel …");
        compare(named("counts"), null);
    }

    function test_offersWhatIsNew() {
        openWith([["A.JPG", 1e6, "2024-05-09"], ["B.JPG", 1e6, "2024-05-09"]]);
        tryCompare(named("status"), "text", "2 neue Dateien (2 MB) bereit zum Import.");
        isEnabled("Button", "2 importieren", true);
        compare(told("Button", "2 importieren").description, "");
        hasNo("Button", "Importieren");
    }

    function test_offersNothingWhenAllIsThere() {
        const camera = openWith([["A.JPG", 10, "2024-05-09"]]);
        script.startImport();
        script.deliver(camera, 0);
        isEnabled("Button", "Importieren", false);
    }

    function test_importsNothingUntilAFolderIsChosen() {
        script.granted = false;
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        tryCompare(named("status"), "text", "Zielordner wählen: unter Ziel auf „Ändern …“ klicken.");
        isEnabled("Button", "1 importieren", false);
        keyClick(Qt.Key_Return);
        compare(script.model.importing, false);
    }

    function test_importsNothingUntilAServerIsNamed() {
        script.startsWithServer = true;
        script.serverName = "";
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        const advice = "Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und prüfen“.";
        tryCompare(named("status"), "text", advice);
        isEnabled("Button", "1 importieren", false);
        view.forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(script.model.importing, false);
        compare(named("status").text, advice);

        script.model.sftpHost = "nas";
        press("Verbinden und prüfen");
        script.settle();
        tryCompare(named("status"), "text", "1 neue Dateien (1 MB) bereit zum Import.");
        isEnabled("Button", "1 importieren", true);
    }

    function test_showsAnImport() {
        const camera = openWith([["A.JPG", 600, "2024-05-09"], ["B.JPG", 400, "2024-05-09"]]);
        press("2 importieren");
        script.settle();
        shows("0 von 2");
        shows("· überträgt zum Ziel …");
        hasNo("Button", "2 importieren");
        tryCompare(named("status"), "text", "Lade 1 von 2: A.JPG");
        compare(named("progress").value, 0);
        verify(named("current") !== null);
        compare(named("counts").font.family, Theme.monospace);

        script.deliver(camera, 0);
        shows("1 von 2");
        tryCompare(named("progress"), "value", 0.6);
        script.grow(camera, 1, 200);
        script.advance(500);
        tryCompare(named("progress"), "value", 0.8);

        script.deliver(camera, 1);
        hides("· überträgt zum Ziel …");
        isEnabled("Button", "Importieren", false);
        shows("Protokoll (3)");
    }

    function test_tellsOfWhatIsNewButNotOfEveryFile() {
        const camera = openWith([["A.JPG", 600, "2024-05-09"], ["B.JPG", 400, "2024-05-09"]]);
        has("Notification", "2 neue Dateien (1 KB) bereit zum Import.");
        hasNo("Notification", "2 neue Dateien (1 KB) bereit zum Import.");
        script.startImport();
        has("Notification", "Lade 1 von 2: A.JPG");
        hasNo("Notification", "Lade 1 von 2: A.JPG");
        script.deliver(camera, 0);
        tryCompare(named("status"), "text", "Lade 2 von 2: B.JPG");
        verify(!tree.all(view).some(line => line.startsWith("Notification")));
        script.deliver(camera, 1);
        has("Notification", "Nichts Neues im gewählten Zeitraum.");
    }

    function test_saysWhatCameOfAnImport() {
        const camera = openWith([["A.JPG", 600, "2024-05-09"]]);
        script.startImport();
        script.deliverLast(camera, 0);
        tryVerify(() => named("status").text.startsWith("Fertig: 1 geladen (600 Byte)"));
        has("Notification", named("status").text);
        hasNo("Button", "Abbrechen");
    }

    function test_tellsOfAnImportWhoseFolderTakesLong() {
        openWith([["A.JPG", 600, "2024-05-09"]]);
        has("Notification", "1 neue Dateien (600 Byte) bereit zum Import.");
        script.model.startImport();
        tryCompare(script.model, "importing", true);
        // Longer than changes are collected.
        wait(150);
        script.settle();
        has("Notification", "Lade 1 von 1: A.JPG");
    }

    function test_tellsOfAnImportThatTakesNoTime() {
        const camera = openWith([["A.JPG", 600, "2024-05-09"]]);
        has("Notification", "1 neue Dateien (600 Byte) bereit zum Import.");
        script.startImport();
        script.deliver(camera, 0);
        has("Notification", "Lade 1 von 1: A.JPG");
        tryVerify(() => tree.all(view).some(line => line.startsWith("Notification: Fertig: 1 geladen (600 Byte)")));
        has("Notification", "Nichts Neues im gewählten Zeitraum.");
    }

    function test_cancels() {
        const camera = openWith([["A.JPG", 600, "2024-05-09"], ["B.JPG", 400, "2024-05-09"]]);
        press("2 importieren");
        script.settle();
        press("Abbrechen");
        has("Notification", "Breche nach der aktuellen Datei ab …");
        script.deliver(camera, 0);
        tryVerify(() => !script.model.importing);
        hasNo("Button", "Abbrechen");
        isEnabled("Button", "1 importieren", true);
    }

    function test_readsAnew() {
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        showsSymbol("arrow.clockwise");
        press("Kamera und Zielordner neu einlesen");
        tryCompare(named("status"), "text", "Lese Kamera neu ein …");
    }

    function test_saysWhatTheSymbolMeans() {
        open();
        const button = has("Button", "Kamera und Zielordner neu einlesen");
        mouseMove(button);
        shows("Kamera und Zielordner neu einlesen");
    }

    function test_importsOnReturn_data() {
        return [
            {
                tag: "return",
                key: Qt.Key_Return
            },
            {
                tag: "enter",
                key: Qt.Key_Enter
            }
        ];
    }

    function test_importsOnReturn(row) {
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        isEnabled("Button", "1 importieren", true);
        keyClick(row.key);
        tryCompare(script.model, "importing", true);
        keyClick(row.key);
        compare(script.model.importing, true);
    }

    function test_showsALongStatusWhole() {
        open({
            width: 520
        });
        const camera = script.camera("EOS R6", "r6");
        script.plugIn(camera);
        script.refuseSession(camera, "Gerät belegt");
        tryVerify(() => named("status").text.startsWith("Verbindung fehlgeschlagen"));
        compare(named("status").truncated, false);
        verify(named("status").lineCount > 1);
    }
}
