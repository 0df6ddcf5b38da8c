// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "FolderRows"

    function test_showsTheFolderAndWhereItsFilesGo() {
        open();
        has("Heading", "Ziel");
        shows("/bilder");
        showsSymbol("folder");
        showsSymbol("arrow.up.forward.app");
        shows("Nach Aufnahmetag ablegen");
        shows("Unterordner JJJJ-MM-TT");
        shows("Nach Dateityp trennen");
        shows("Unterordner CR3, JPG, MP4 …");
        compare(told("RadioButton", "Ordner").checked, true);
        compare(told("RadioButton", "SFTP").checked, false);
        hidesSymbol("folder.badge.questionmark");
        hides("Zielordner noch nicht freigegeben");
        hides("Ziel liegt auf einer Netzwerkfreigabe");
    }

    function test_letsTheFolderBeSelectedAsText() {
        open();
        const path = named("destination");
        path.selectAll();
        compare(path.selectedText, "/bilder");
        compare(path.readOnly, true);
    }

    function test_changesTheFolder() {
        open();
        script.choose("/fotos");
        press("Ändern …");
        shows("/fotos");
        compare(script.stored("dest"), "/fotos");

        script.choose("");
        press("Ändern …");
        compare(script.dialogs, 2);
        shows("/fotos");
    }

    function test_showsTheFolderInTheFileManager() {
        open();
        press("Im Finder zeigen");
        compare(script.shownFolders, ["/bilder"]);
    }

    function test_warnsOfAFolderThatMayNotBeUsedYet() {
        script.granted = false;
        open();
        shows("Zielordner noch nicht freigegeben");
        shows("Bitte über „Ändern …“ einmal wählen. Die App merkt sich die Freigabe auch über einen Neustart.");
        showsSymbol("folder.badge.questionmark");

        script.choose("/fotos");
        press("Ändern …");
        hides("Zielordner noch nicht freigegeben");
        hidesSymbol("folder.badge.questionmark");
    }

    function test_warnsOfAFolderOnTheNetwork() {
        script.onNetwork = true;
        open();
        hides("Ziel liegt auf einer Netzwerkfreigabe");
        connect([["A.JPG", 1e6, "2024-05-09"]]);
        shows("Ziel liegt auf einer Netzwerkfreigabe");
        shows("Der Import dauert dort ein Vielfaches und bricht eher ab. Besser erst auf eine lokale Platte laden und danach übertragen.");
        showsSymbol("exclamationmark.triangle");
    }

    function test_keepsTheLayout_data() {
        return [
            {
                tag: "day",
                title: "Nach Aufnahmetag ablegen",
                key: "byDate",
                before: false
            },
            {
                tag: "type",
                title: "Nach Dateityp trennen",
                key: "byType",
                before: true
            }
        ];
    }

    function test_keepsTheLayout(row) {
        open();
        for (const on of [row.before, !row.before, row.before]) {
            compare(told("CheckBox", row.title).checked, on);
            compare(script.stored(row.key), on ? "ja" : "nein");
            click("CheckBox", row.title);
        }
    }

    function test_leavesTheServersRowsOut() {
        open();
        hides("Benutzer");
        hides("Verbinden und prüfen");
        hides("Schlüssel der App");
    }
}
