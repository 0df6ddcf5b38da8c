// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "AutoImportRows"

    readonly property string title: "Beim Verbinden derselben Kamera fehlende Dateien importieren"
    readonly property string off: "Kamera zuerst verbinden und Zielordner wählen. Der automatische Modus ist nur für diese Kamera gültig."
    readonly property string on: "Freigegeben für EOS R6. Beim nächsten Verbinden beginnt der Import ab dem ersten fehlenden Aufnahmetag. Vorhandene Dateien bleiben unangetastet."

    function test_needsACamera() {
        open();
        has("Heading", "Automatisch nachziehen");
        shows(title);
        shows(off);
        isEnabled("CheckBox", title, false);
        compare(told("CheckBox", title).checked, false);
    }

    function test_needsACameraThatCanBeRecognised() {
        openWith([["A.JPG", 1e6, "2024-05-09"]], "EOS R6", "");
        isEnabled("CheckBox", title, false);
    }

    function test_needsACameraThatHasSaidWhoItIs() {
        open();
        const camera = script.camera("EOS R6", "r6");
        script.keepIdentityOpen(camera);
        script.file(camera, "A.JPG", 1e6, "2024-05-09");
        script.connectCamera(camera);
        shows("EOS R6");
        isEnabled("CheckBox", title, false);
    }

    function test_canBeTurnedOffWithoutItsCamera() {
        const camera = openWith([["A.JPG", 1e6, "2024-05-09"]]);
        isEnabled("CheckBox", title, true);
        click("CheckBox", title);
        shows(on);
        compare(told("CheckBox", title).checked, true);
        compare(script.stored("autoImportEnabled"), "ja");

        script.unplug(camera);
        shows("Keine Kamera");
        isEnabled("CheckBox", title, true);
        click("CheckBox", title);
        shows(off);
        compare(script.stored("autoImportEnabled"), "nein");
        isEnabled("CheckBox", title, false);
    }

    function test_cannotBeChangedDuringAnImport() {
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        isEnabled("CheckBox", title, true);
        click("CheckBox", title);
        shows(on);
        script.startImport();
        isEnabled("CheckBox", title, false);
    }
}
