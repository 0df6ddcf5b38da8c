// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "SummaryRow"

    readonly property string waits: "Abgleich, sobald der Zielordner freigegeben ist"
    readonly property string empty: "Die Kamera meldet keine Dateien"
    readonly property string hint: "Karte eingelegt? Sonst Kamera aus- und wieder einschalten und dann ↻ klicken."
    readonly property string done: "Alles bereits im Zielordner"

    function onlyShows(text, symbol) {
        if (text)
            shows(text);
        for (const other of ["Keine Kamera verbunden", waits, empty, hint, done])
            if (other !== text && !(text === empty && other === hint))
                hides(other);
        if (symbol)
            showsSymbol(symbol);
    }

    function test_saysThatThereIsNoCamera() {
        open();
        has("Heading", "Neu zu importieren");
        onlyShows("Keine Kamera verbunden", "cable.connector.slash");
    }

    function test_saysWhatIsGoingOn() {
        open();
        const camera = script.camera("EOS R6", "r6");
        script.file(camera, "A.JPG", 1e6, "2024-05-09");
        script.plugIn(camera);
        tryVerify(() => named("workingStatus")?.text === "Verbinde mit EOS R6 …");
        onlyShows("");
        compare(spinners(), 2);
        script.openSession(camera);
        tryVerify(() => named("workingStatus").text === "Lese Dateiliste der Karte(n) …");
        script.readCard(camera);
        tryVerify(() => named("workingStatus").text === "Prüfe Zielordner …");
        script.settle();
        tryVerify(() => named("workingStatus") === null);
        compare(spinners(), 0);
    }

    function test_waitsForTheFolder() {
        script.granted = false;
        openWith([["A.JPG", 1e6, "2024-05-09"]]);
        onlyShows(waits, "folder.badge.questionmark");
        compare(named("newCount"), null);
    }

    function test_saysThatThereAreNoFiles() {
        openWith([]);
        onlyShows(empty, "sdcard");
        shows(hint);
    }

    function test_saysThatAllIsThere() {
        const camera = openWith([["A.JPG", 10, "2024-05-09"]]);
        script.startImport();
        script.deliver(camera, 0);
        onlyShows(done, "checkmark.circle.fill");
    }

    function test_countsWhatIsNew() {
        openWith([["A.CR3", 3e6, "2024-05-09"], ["B.CR3", 4e6, "2024-05-09"], ["A.JPG", 5e5, "2024-05-09"]]);
        onlyShows("");
        compare(named("newCount").text, "3 Dateien");
        compare(named("newSize").text, "7,5 MB");
        compare(tiles(), ["CR3|2|7 MB|camera.aperture", "JPG|1|500 KB|photo"]);
        has("StaticText", "CR3: 2 (7 MB)");
    }

    function test_countsOne() {
        openWith([["A.CR3", 3e6, "2024-05-09"]]);
        tryVerify(() => named("newCount")?.text === "1 Datei");
    }

    function tiles() {
        const found = [];
        const parts = {};
        visit(root(), item => {
            if (item instanceof Tile)
                found.push([item.tile.name, item.tile.count, item.tile.size, item.tile.symbol].join("|"));
        });
        return found;
    }

    function test_drawsEachType_data() {
        const symbols = {
            CR3: "camera.aperture",
            CR2: "camera.aperture",
            DNG: "camera.aperture",
            JPG: "photo",
            HIF: "photo",
            HEIC: "photo",
            MP4: "film",
            MOV: "film",
            CRM: "film",
            WAV: "waveform",
            TIF: "doc"
        };
        return Object.keys(symbols).map(extension => ({
                    tag: extension,
                    symbol: symbols[extension]
                }));
    }

    function test_drawsEachType(row) {
        openWith([["A." + row.tag.toLowerCase(), 1e6, "2024-05-09"]]);
        tryVerify(() => tiles().length === 1);
        compare(tiles()[0], row.tag + "|1|1 MB|" + row.symbol);
        compare(named("tileName").text, row.tag);
        compare(named("tileCount").text, "1");
        compare(named("tileSize").text, "1 MB");
        compare(named("tileSymbol").name, row.symbol);
    }

    function test_knowsExtensionsInCapitalsOnly() {
        for (const [extension, symbol] of [["MOV", "film"], ["JPEG", "doc"], ["mov", "doc"], ["MO", "doc"], ["", "doc"]])
            compare(script.tile(extension).symbol, symbol, extension);
        compare(script.tile("").name, "Sonstige");
    }

    function test_namesFilesWithoutAnExtension() {
        openWith([["LIESMICH", 1e6, "2024-05-09"]]);
        tryVerify(() => tiles().length === 1);
        compare(tiles()[0], "Sonstige|1|1 MB|doc");
        has("StaticText", "Sonstige: 1 (1 MB)");
    }

    function test_showsHostileExtensionsAsTheyAre() {
        openWith([["A.<b>X", 1e6, "2024-05-09"], ["A.%1", 1e6, "2024-05-09"]]);
        tryVerify(() => tiles().length === 2);
        shows("<B>X");
        has("StaticText", "%1: 1 (1 MB)");
    }
}
