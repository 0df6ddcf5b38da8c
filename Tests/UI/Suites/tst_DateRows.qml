// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "DateRows"

    readonly property string title: "Nur ab einem bestimmten Tag"
    readonly property string single: "Auf der Karte gibt es nur diesen einen Aufnahmetag."

    function test_isOffAtFirst() {
        openWith([["A.JPG", 1e6, "2024-05-08"], ["B.JPG", 1e6, "2024-05-09"]]);
        has("Heading", "Zeitraum");
        shows(title);
        shows("Ältere Aufnahmen werden übersprungen");
        hidesSymbol("calendar");
        hasNo("Slider", title);
        hides("ab Donnerstag, 9. Mai 2024");
    }

    function test_choosesADay() {
        openWith([["A.JPG", 1e6, "2024-05-07"], ["B.JPG", 1e6, "2024-05-08"], ["C.JPG", 1e6, "2024-05-09"]]);
        click("CheckBox", title);
        compare(script.stored("useFromDate"), "ja");
        shows("ab Donnerstag, 9. Mai 2024");
        showsSymbol("calendar");
        hides(single);
        shows("1 importieren");

        const slider = has("Slider", title);
        compare([slider.from, slider.to, slider.stepSize, slider.value], [0, 2, 1, 2]);
        slider.forceActiveFocus();
        keyClick(Qt.Key_Left);
        shows("ab Mittwoch, 8. Mai 2024");
        compare(script.stored("fromDay"), "2024-05-08");
        shows("2 importieren");
        compare(told("Slider", title).description, "ab Mittwoch, 8. Mai 2024");

        mousePress(slider, 1, slider.height / 2);
        mouseRelease(slider, 1, slider.height / 2);
        shows("ab Dienstag, 7. Mai 2024");
        shows("3 importieren");

        click("CheckBox", title);
        hidesSymbol("calendar");
        compare(script.stored("useFromDate"), "nein");
    }

    function test_hasNoSliderForASingleDay() {
        openWith([["A.JPG", 1e6, "2024-05-09"], ["B.JPG", 1e6, "2024-05-09"]]);
        click("CheckBox", title);
        shows("ab Donnerstag, 9. Mai 2024");
        shows(single);
        showsSymbol("calendar");
        hasNo("Slider", title);
    }

    function test_hasNothingToChooseAmongFilesWithoutADay() {
        openWith([["A.JPG", 1e6]]);
        click("CheckBox", title);
        hides(single);
        hidesSymbol("calendar");
        hasNo("Slider", title);
    }
}
