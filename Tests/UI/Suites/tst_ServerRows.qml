// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "ServerRows"

    readonly property string mismatch: "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der Server neu eingerichtet wurde: gespeicherten Server-Schlüssel vergessen."

    function openServer() {
        script.startsWithServer = true;
        script.publicKey = "ssh-ed25519 AAAA bildkurier";
        open();
    }

    function check() {
        press("Verbinden und prüfen");
        script.settle();
    }

    function type(field, text) {
        const item = has("EditableText", field);
        item.forceActiveFocus();
        item.selectAll();
        for (const letter of text)
            keyClick(letter);
    }

    function test_appearsWhenAServerIsChosen() {
        open();
        click("RadioButton", "SFTP");
        shows("Benutzer");
        shows("Rechner");
        compare(told("RadioButton", "SFTP").checked, true);
        click("RadioButton", "SFTP");
        compare(told("RadioButton", "SFTP").checked, true);
        hides("Im Finder zeigen");
        hides("/bilder");
        shows("Nach Aufnahmetag ablegen");
        shows("Nach Dateityp trennen");

        click("RadioButton", "Ordner");
        shows("/bilder");
        hides("Benutzer");
    }

    function test_showsWhatIsStored() {
        openServer();
        compare(has("EditableText", "Benutzer").text, "quarzfeld");
        compare(has("EditableText", "Rechner").text, "nas.local:2222");
        compare(has("EditableText", "Ordner").text, "/fotos");
        hidesSymbol("checkmark.circle");
        hidesSymbol("xmark.circle");
        compare(named("hostKey"), null);
    }

    function test_saysWhatBelongsWhere() {
        openServer();
        for (const [field, placeholder] of [["Benutzer", "quarzfeld"], ["Rechner", "nas.local, IP oder rechner:port"], ["Ordner", "/Users/quarzfeld/Bilder"]]) {
            type(field, "x");
            keyClick(Qt.Key_Backspace);
            shows(placeholder);
        }
    }

    function test_connectsToWhatWasTyped() {
        openServer();
        type("Benutzer", "anna");
        type("Rechner", "nas");
        type("Ordner", "/fotos");
        compare(script.stored("sftpUser"), "quarzfeld");

        press("Verbinden und prüfen");
        isEnabled("Button", "Verbinden und prüfen", false);
        compare(named("checking").visible, true);
        script.settle();
        isEnabled("Button", "Verbinden und prüfen", true);
        compare(named("checking"), null);
        compare(script.stored("sftpUser"), "anna");
        compare(script.stored("sftpHost"), "nas");
        compare(script.stored("sftpPath"), "/fotos");
        shows("Verbunden mit nas.");
        has("Notification", "Verbunden mit nas.");
        showsSymbol("checkmark.circle");
        hidesSymbol("xmark.circle");
    }

    function test_connectsWhenReturnIsPressedInAField_data() {
        return ["Benutzer", "Rechner", "Ordner"].map(field => ({
                    tag: field
                }));
    }

    function test_connectsWhenReturnIsPressedInAField(row) {
        openServer();
        connect([["A.JPG", 1e6, "2024-05-09"]]);
        isEnabled("Button", "1 importieren", true);
        has("EditableText", row.tag).forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(script.model.importing, false);
        isEnabled("Button", "Verbinden und prüfen", false);
        keyClick(Qt.Key_Enter);
        script.settle();
        shows("Verbunden mit nas.local:2222.");
        compare(script.model.importing, false);
    }

    function test_tellsOfAServerMetForTheFirstTime() {
        openServer();
        script.showServerKey("SHA256:3Yc0 (ED25519)");
        check();
        shows("Erste Verbindung: Server-Schlüssel SHA256:3Yc0 (ED25519) gespeichert. Mit dem Fingerabdruck auf dem Server vergleichen.");
        check();
        shows("Server-Schlüssel: SHA256:3Yc0 (ED25519)");
        hides("Gespeicherten Server-Schlüssel vergessen");
    }

    function test_saysWhatAServerAnswers() {
        openServer();
        script.refuseServer("Permission denied (publickey).");
        check();
        shows("Ordner lässt sich nicht anlegen: Permission denied (publickey).");
        showsSymbol("xmark.circle");
        hidesSymbol("checkmark.circle");
        hides("Gespeicherten Server-Schlüssel vergessen");
    }

    function test_forgetsAServersKey() {
        openServer();
        check();
        script.showServerKey("SHA256:anderer (ED25519)");
        check();
        shows(mismatch);
        showsSymbol("xmark.circle");

        press("Gespeicherten Server-Schlüssel vergessen");
        shows("Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“.");
        hides("Gespeicherten Server-Schlüssel vergessen");
        check();
        shows("Verbunden mit nas.local:2222.");
        shows("Erste Verbindung: Server-Schlüssel SHA256:anderer (ED25519) gespeichert. Mit dem Fingerabdruck auf dem Server vergleichen.");
    }
}
