// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
import QtQuick
import QtTest
import Bildkurier

WindowTest {
    name: "KeyRows"

    readonly property string generated: "Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server eintragen."
    readonly property string instruction: "Diesen öffentlichen Schlüssel auf dem Server als eine Zeile in ~/.ssh/authorized_keys des Benutzers eintragen (bei SFTPGo im Benutzer unter „Public keys“). Die App meldet sich nur damit an, nie mit Passwort."
    readonly property string ownSetup: "Anmeldung nur mit ssh-Schlüssel, ohne Passwortabfrage. Ohne eigenen Schlüssel der App gilt die ssh-Einrichtung in ~/.ssh (einrichten im Terminal: ssh-copy-id benutzer@rechner)."
    readonly property string ownKeyNeeded: "Anmeldung nur mit ssh-Schlüssel, ohne Passwortabfrage. Die App braucht dafür einen eigenen Schlüssel: neu erzeugen oder einen vorhandenen (z. B. ~/.ssh/id_ed25519) übernehmen."
    readonly property string key: "ssh-ed25519 AAAA bildkurier"

    function openKeys(publicKey) {
        script.startsWithServer = true;
        script.publicKey = publicKey;
        open();
    }

    function test_explainsLoggingInWithoutAKey() {
        openKeys("");
        has("Heading", "Schlüssel der App");
        showsSymbol("key.fill");
        shows(ownSetup);
        hides(instruction);
        hasNo("Button", "Kopieren");
        hasNo("Button", "Neuen Schlüssel erzeugen");
        hasNo("Button", "Schlüssel der App löschen");
    }

    function test_explainsThatAKeyIsNeeded() {
        script.keyRequired = true;
        openKeys("");
        shows(ownKeyNeeded);
        hides(ownSetup);
    }

    function test_showsTheKey() {
        openKeys(key);
        shows(key);
        shows("SHA256:" + key + " (ED25519)");
        shows(instruction);
        hides(ownSetup);
        hasNo("Button", "Schlüssel erzeugen");
        has("Button", "Schlüssel übernehmen …");
    }

    function test_leavesOutTheMiddleOfALongKey() {
        openKeys("ssh-ed25519 " + "A".repeat(300) + " bildkurier");
        const line = named("publicKey");
        let shortened = null;
        visit(line, item => shortened = item.truncated ? item : shortened);
        compare(shortened.elide, Text.ElideMiddle);
        compare(shortened.lineCount, 1);

        has("EditableText", line.text).forceActiveFocus();
        compare(has("EditableText", line.text).selectedText, line.text);
    }

    function test_copiesTheKey() {
        script.clipboard = "etwas anderes";
        openKeys(key);
        press("Kopieren");
        compare(script.clipboard, key);
    }

    function test_makesTheFirstKeyAtOnce() {
        openKeys("");
        press("Schlüssel erzeugen");
        isEnabled("Button", "Schlüssel erzeugen", false);
        isEnabled("Button", "Schlüssel übernehmen …", false);
        compare(named("keyBusy").visible, true);
        compare(view.confirmNewKey, false);
        script.settle();
        shows("ssh-ed25519 neu1 bildkurier");
        shows(generated);
        has("Notification", generated);
        compare(named("keyBusy"), null);
    }

    function test_disablesAllButtonsMeanwhile() {
        openKeys(key);
        const names = ["Neuen Schlüssel erzeugen", "Schlüssel übernehmen …", "Schlüssel der App löschen"];
        script.choose("/home/anna/.ssh/id_ed25519");
        press("Schlüssel übernehmen …");
        for (const name of names)
            isEnabled("Button", name, false);
        script.settle();
        for (const name of names)
            isEnabled("Button", name, true);
    }

    function test_removesTheKey() {
        openKeys(key);
        press("Schlüssel der App löschen");
        script.settle();
        shows(ownSetup);
        shows("Schlüssel der App gelöscht.");
        hides(key);
        has("Button", "Schlüssel erzeugen");
        hasNo("Button", "Neuen Schlüssel erzeugen");
        hasNo("Button", "Schlüssel der App löschen");
    }

    function test_asksBeforeAKeyIsReplaced() {
        openKeys(key);
        press("Neuen Schlüssel erzeugen");
        compare(view.confirmNewKey, true);
        shows("Neuen Schlüssel erzeugen?");
        shows("Der bisherige Schlüssel wird ersetzt und muss danach auch auf dem Server ersetzt werden.");
        script.settle();
        compare(script.keysMade, 0);

        mouseClick(named("confirmNewKey"));
        hides("Neuen Schlüssel erzeugen?");
        compare(view.confirmNewKey, false);
        script.settle();
        compare(script.keysMade, 1);
        shows("ssh-ed25519 neu1 bildkurier");
        shows(generated);
    }

    function test_asksBeforeAKeyWithoutAPublicHalfIsReplaced() {
        script.publicKeyReadable = false;
        openKeys(key);
        hides(key);
        hides(ownSetup);
        hides(instruction);
        hasNo("Button", "Kopieren");
        hasNo("Button", "Schlüssel erzeugen");
        has("Button", "Schlüssel der App löschen");
        press("Neuen Schlüssel erzeugen");
        shows("Neuen Schlüssel erzeugen?");
        script.settle();
        compare(script.keysMade, 0);
    }

    function test_saysThatTheKeyIsStillThere() {
        openKeys(key);
        script.failKeys("Der Datenträger ist schreibgeschützt.");
        press("Schlüssel der App löschen");
        script.settle();
        shows("Der Schlüssel lässt sich nicht löschen.");
        shows(key);
    }

    function test_keepsTheKeyWhenNotConfirmed_data() {
        return [
            {
                tag: "button",
                refuse: () => mouseClick(named("keepKey"))
            },
            {
                tag: "escape",
                refuse: () => keyClick(Qt.Key_Escape)
            },
            {
                tag: "space bar on what is offered first",
                refuse: () => keyClick(Qt.Key_Space)
            },
            {
                tag: "return on what is offered first",
                refuse: () => keyClick(Qt.Key_Return)
            },
            {
                tag: "enter on what is offered first",
                refuse: () => keyClick(Qt.Key_Enter)
            }
        ];
    }

    function test_keepsTheKeyWhenNotConfirmed(row) {
        openKeys(key);
        press("Neuen Schlüssel erzeugen");
        shows("Neuen Schlüssel erzeugen?");
        tryVerify(() => named("keepKey").activeFocus);
        row.refuse();
        hides("Neuen Schlüssel erzeugen?");
        compare(view.confirmNewKey, false);
        script.settle();
        compare(script.keysMade, 0);
        shows(key);

        press("Neuen Schlüssel erzeugen");
        shows("Neuen Schlüssel erzeugen?");
    }

    function test_replacesTheKeyByKeyboard() {
        openKeys(key);
        press("Neuen Schlüssel erzeugen");
        tryVerify(() => named("keepKey") !== null && named("keepKey").activeFocus);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Return);
        hides("Neuen Schlüssel erzeugen?");
        script.settle();
        compare(script.keysMade, 1);
        shows("ssh-ed25519 neu1 bildkurier");
    }

    function test_takesAKeyOver() {
        openKeys("");
        script.choose("/home/anna/.ssh/id_ed25519");
        press("Schlüssel übernehmen …");
        compare(script.dialogs, 1);
        script.settle();
        shows("ssh-ed25519 /home/anna/.ssh/id_ed25519");
        shows("Schlüssel übernommen.");
        has("Button", "Neuen Schlüssel erzeugen");
    }

    function test_saysWhatWentWrong() {
        openKeys("");
        script.failKeys("Kein Platz.");
        press("Schlüssel erzeugen");
        script.settle();
        shows("Kein Platz.");
        hides(generated);
    }
}
