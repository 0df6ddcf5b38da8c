// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "Layout"

    /// Texts that lie beside their window or are shortened without a need.
    function cut() {
        const found = [];
        visit(root(), item => {
            if (!(item instanceof Text) || item.text === "")
                return;
            const left = item.mapToItem(view, 0, 0).x;
            if (left < -0.5 || left + Math.min(item.contentWidth, item.width) > view.width + 0.5)
                found.push("outside: " + item.text);
            if (item.elide === Text.ElideNone && (item.contentWidth > item.width + 1 || item.contentHeight > item.height + 1))
                found.push("cut: " + item.text + " " + [item.contentWidth, item.width, item.contentHeight, item.height]);
        });
        return found.join("\n");
    }

    /// Texts that lie on each other.
    function overlapping() {
        const texts = [];
        visit(root(), item => {
            if (item instanceof Text && item.text !== "")
                texts.push({
                    text: item.text,
                    box: item.mapToItem(view, 0, 0, Math.min(item.contentWidth, item.width), item.height)
                });
        });
        const found = [];
        texts.forEach((one, i) => texts.slice(i + 1).forEach(other => {
                const a = one.box, b = other.box;
                if (a.x + a.width > b.x + 1 && b.x + b.width > a.x + 1 && a.y + a.height > b.y + 1 && b.y + b.height > a.y + 1)
                    found.push(one.text + " | " + other.text);
            }));
        return found.join("\n");
    }

    /// Soon, and says what it holds otherwise.
    function becomesEmpty(found) {
        for (let looks = 0; looks < 40 && found() !== ""; ++looks)
            wait(25);
        compare(found(), "");
    }

    function test_fitsEveryWidth_data() {
        const rows = [];
        for (const width of [520, 680, 1200])
            for (const state of ["no camera", "ready", "importing", "choice", "server", "mismatch", "log"])
                rows.push({
                    tag: state + " " + width,
                    state: state,
                    width: width
                });
        return rows;
    }

    function test_fitsEveryWidth(row) {
        const state = row.state;
        script.granted = state !== "choice";
        script.onNetwork = state === "log";
        if (state === "server" || state === "mismatch") {
            script.startsWithServer = true;
            script.publicKey = "ssh-ed25519 " + "A".repeat(68) + " bildkurier";
            script.showServerKey("SHA256:3Yc0nq2uVb8Qy1mRz7Zt8xVQm0d7k1bq5R2yWnC4eHs (ED25519)");
        }
        open({
            width: row.width
        });
        if (state === "server" || state === "mismatch") {
            press("Verbinden und prüfen");
            script.settle();
        }
        if (state === "mismatch") {
            script.showServerKey("SHA256:anderer");
            press("Verbinden und prüfen");
            script.settle();
            has("Button", "Gespeicherten Server-Schlüssel vergessen");
        }
        if (state !== "no camera") {
            const camera = connect([["A.JPG", 600, "2024-05-08"], ["B.JPG", 400, "2024-05-09"], ["Bild ohne Endung", 10, "2024-05-09"], ["C.EINESEHRLANGEENDUNG", 10, "2024-05-09"]], "Eine Kamera mit einem sehr langen Namen, der nie und nimmer in eine einzige Zeile passt", "k");
            script.model.useFromDate = true;
            script.model.autoImportEnabled = true;
            if (state === "importing") {
                script.startImport();
                script.grow(camera, 1, 200);
                script.advance(3000);
                hasNo("Button", "1 importieren");
            }
        }
        if (state === "log") {
            script.log("✗ 2024-05-09/JPG/Ein_Dateiname_der_so_lang_ist_dass_er_umbrochen_werden_muss_weil_er_sonst_nicht_in_das_Fenster_passt.JPG  Größe stimmt nicht");
            press("Protokoll (1)");
        }
        becomesEmpty(cut);
        becomesEmpty(overlapping);
    }

    function test_keepsTheRightDistances() {
        openWith([["A.JPG", 600, "2024-05-09"]]);
        const cards = [];
        visit(root(), item => {
            if (item instanceof Card)
                cards.push(item);
        });
        compare(cards.length, 6);
        for (const card of cards) {
            compare(card.mapToItem(view, 0, 0).x, Theme.margin);
            compare(card.width, view.width - 2 * Theme.margin);
        }
    }

    function luminance(color) {
        const linear = [color.r, color.g, color.b].map(part => part <= 0.04045 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4));
        return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
    }

    function contrast(one, other) {
        const [dark, bright] = [luminance(one), luminance(other)].sort((a, b) => a - b);
        return (bright + 0.05) / (dark + 0.05);
    }

    function test_canBeRead_data() {
        return [
            {
                tag: "light",
                dark: false
            },
            {
                tag: "dark",
                dark: true
            }
        ];
    }

    function test_canBeRead(row) {
        script.dark = row.dark;
        tryCompare(Theme, "dark", row.dark);
        const pairs = [[Theme.text, Theme.window], [Theme.secondary, Theme.window], [Theme.text, Theme.card], [Theme.secondary, Theme.card], [Theme.good, Theme.card], [Theme.bad, Theme.card], [Theme.bad, Theme.control], [Theme.text, Theme.control], [Theme.text, Theme.pressed], [Theme.text, Theme.chosen], [Theme.secondary, Theme.groove], [Theme.text, Theme.groove], [Theme.text, Theme.field], [Theme.secondary, Theme.field], [Theme.warning, Theme.warningTint], [Theme.text, Theme.warningTint], ["#ffffff", Theme.prominent]];
        for (let i = 0; i < Theme.tileTints.length; ++i)
            pairs.push([Theme.tileTexts[i], Theme.tileTints[i]], [Theme.text, Theme.tileTints[i]], [Theme.secondary, Theme.tileTints[i]]);
        pairs.forEach(([text, ground], i) => {
            const found = contrast(Qt.color(text), Qt.color(ground));
            verify(found >= 4.5, i + ": " + text + " on " + ground + ": " + found.toFixed(2));
        });
        script.dark = false;
    }
}
