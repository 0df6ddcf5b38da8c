// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest

WindowTest {
    name: "CameraHeader"

    function test_saysThatThereIsNoCamera() {
        open();
        shows("Keine Kamera");
        shows("Kamera einschalten und per USB verbinden");
        shows("Nicht verbunden");
        hides("Verbunden");
        compare(named("cameraSymbol").opacity < 1, true);
    }

    function test_saysWhatBecomesOfACamera() {
        open();
        const camera = script.camera("EOS R6", "r6");
        script.file(camera, "A.CR3", 30e6, "2024-05-08");
        script.file(camera, "B.JPG", 8e6, "2024-05-09");
        script.plugIn(camera);
        shows("EOS R6");
        shows("Verbinde …");
        hides("Verbunden");
        hides("Nicht verbunden");
        verify(spinners() > 0);

        script.openSession(camera);
        shows("Lese Speicherkarte …");
        hides("Verbunden");

        script.readCard(camera);
        shows("2 Dateien · 38 MB · 2 Aufnahmetage");
        hides("Verbunden");

        script.settle();
        shows("Verbunden");
        compare(spinners(), 0);
        compare(named("cameraSymbol").opacity, 1);

        script.startImport();
        shows("2 Dateien · 38 MB · 2 Aufnahmetage");
        shows("Verbunden");

        script.unplug(camera);
        shows("Keine Kamera");
        shows("Nicht verbunden");
    }

    function test_writesNumbersAsTheUserDoes() {
        const files = [];
        for (let i = 0; i < 1284; ++i)
            files.push(["IMG_" + i + ".JPG", 1e6, "2024-05-0" + (1 + i % 6)]);
        openWith(files);
        shows("1.284 Dateien · 1,28 GB · 6 Aufnahmetage");
    }

    function test_saysWhyACameraCannotBeUsed() {
        open();
        const camera = script.camera("EOS R6", "r6");
        script.plugIn(camera);
        script.refuseSession(camera, "Gerät belegt");
        const why = "Verbindung fehlgeschlagen: Gerät belegt. „Digitale Bilder“, „Fotos“ und Canon-Software schließen, dann Kamera neu verbinden.";
        tryCompare(named("cameraSubtitle"), "text", why);
        shows("Nicht verbunden");
    }

    function test_callsANamelessCameraByWhatItIs() {
        openWith([], "", "");
        shows("Kamera");
        hides("Keine Kamera");
    }

    function test_staysWithTheChosenCameraWhileOthersComeAndGo() {
        const first = openWith([["A.JPG", 1e6, "2024-05-09"]]);
        connect([["B.JPG", 1e6, "2024-05-09"]], "X100");
        const picker = has("ComboBox", "Kamera");
        picker.forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryCompare(picker, "displayText", "X100");
        const third = connect([["C.JPG", 1e6, "2024-05-09"]], "Z9");
        tryCompare(picker, "count", 3);
        compare(picker.displayText, "X100");
        compare(told("ComboBox", "Kamera").description, "X100");
        script.unplug(third);
        tryCompare(picker, "count", 2);
        compare(picker.displayText, "X100");
        connect([["D.JPG", 1e6, "2024-05-09"]], "D850");
        script.unplug(first);
        tryCompare(picker, "displayText", "X100");
        tryCompare(named("cameraTitle"), "text", "X100");
    }

    function test_letsChooseAmongCameras() {
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        hasNo("ComboBox", "Kamera");
        connect([["B.JPG", 1e6, "2024-05-09"], ["C.JPG", 1e6, "2024-05-09"]], "X100");
        const picker = has("ComboBox", "Kamera");
        compare(picker.displayText, "EOS R6");
        compare(told("ComboBox", "Kamera").description, "EOS R6");

        picker.forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryCompare(named("cameraTitle"), "text", "X100");
        tryCompare(picker, "displayText", "X100");
        compare(told("ComboBox", "Kamera").description, "X100");
        shows("Verbinde …");

        keyClick(Qt.Key_Space);
        tryCompare(picker.popup, "visible", true);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Return);
        tryCompare(picker.popup, "visible", false);
        tryCompare(named("cameraTitle"), "text", "EOS R6");
        compare(script.model.importing, false);
    }
}
