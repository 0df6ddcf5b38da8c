// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "Layout"

    readonly property int leastWidth: 520

    /// Texts that lie beside their window or are shortened without a need.
    function cut() {
        const found = [];
        visit(root(), item => {
            if (!(item instanceof Text) || item.text === "")
                return;
            const left = item.mapToItem(view, 0, 0).x;
            if (left < -0.5 || left + Math.min(item.contentWidth, item.width) > view.width + 0.5)
                found.push("outside: " + item.text);
            // Several lines can only end in dots.
            const mayBeShortened = item.elide === Text.ElideRight || item.elide !== Text.ElideNone && item.wrapMode === Text.NoWrap;
            if (!mayBeShortened && (item.truncated || item.contentWidth > item.width + 1 || item.contentHeight > item.height + 1))
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
        for (const width of [leastWidth, 680, 1200])
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

    function test_showsLongNamesWhole_data() {
        return [leastWidth, 680].map(width => ({
                    tag: "" + width,
                    width: width
                }));
    }

    function test_showsLongNamesWhole(row) {
        open({
            width: row.width
        });
        connect([["B".repeat(251) + ".JPG", 600, "2024-05-08"]], "Kamera " + "K".repeat(240), "k");
        connect([["C.JPG", 600, "2024-05-08"]], "X100", "x100");
        script.startImport();
        tryVerify(() => named("status").text.endsWith(".JPG"));
        becomesEmpty(cut);
        for (const name of ["status", "cameraTitle"])
            compare(named(name).truncated, false, name);
    }

    function test_asksOnAGroundOfItsOwn() {
        script.startsWithServer = true;
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        open({
            width: leastWidth,
            height: 480,
            confirmNewKey: true
        });
        tryVerify(() => named("keepKey") !== null);
        tryVerify(isLaidOut);
        const ground = named("questionGround");
        const box = ground.mapToItem(view, 0, 0, ground.width, ground.height);
        let parts = 0;
        visit(ground.parent, item => {
            if (!(item instanceof Text))
                return;
            ++parts;
            const part = item.mapToItem(view, 0, 0, item.contentWidth, item.contentHeight);
            verify(part.left >= box.left && part.right <= box.right && part.top >= box.top && part.bottom <= box.bottom, item.text);
        });
        compare(parts, 4);
        compare(ground.color, Theme.card);
        becomesEmpty(cut);
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

    function over(color, ground) {
        return Qt.tint(ground, color);
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
        const pairs = [[Theme.text, Theme.window], [Theme.secondary, Theme.window], [Theme.text, Theme.card], [Theme.secondary, Theme.card], [Theme.good, Theme.card], [Theme.bad, Theme.card], [Theme.bad, Theme.control], [Theme.bad, Theme.pressed], [Theme.text, Theme.control], [Theme.text, Theme.pressed], [Theme.text, Theme.chosen], [Theme.secondary, Theme.groove], [Theme.text, Theme.groove], [Theme.text, Theme.field], [Theme.secondary, Theme.field], [Theme.warning, Theme.warningTint], [Theme.text, Theme.warningTint], ["#ffffff", Theme.prominent]];
        for (let i = 0; i < Theme.tileTints.length; ++i)
            pairs.push([Theme.tileTexts[i], Theme.tileTints[i]], [Theme.text, Theme.tileTints[i]], [Theme.secondary, Theme.tileTints[i]]);
        // The gauge's colours are given; its scale and its red have a little less.
        const gauge = over(Qt.rgba(0, 0, 0, 0.85), Theme.window);
        for (const ink of [over(Qt.rgba(1, 1, 1, 0.55), gauge), Qt.rgba(0.2, 0.95, 0.3, 1), Qt.rgba(1, 0.85, 0.1, 1), Qt.rgba(0.2, 0.9, 1, 1)])
            pairs.push([ink, gauge]);
        pairs.forEach(([text, ground], i) => {
            const found = contrast(Qt.color(text), Qt.color(ground));
            verify(found >= 4.5, i + ": " + text + " on " + ground + ": " + found.toFixed(2));
        });
        script.dark = false;
    }
}
