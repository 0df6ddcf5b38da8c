// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OpenWindow.h"
#include "Soon.h"
#include "SshServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
#include <regex>
#include <sstream>
#include <string>

namespace bildkurier {
namespace {

/// Whether there is, or soon will be, something of that role with a name that begins so.
bool tellsOf(const OpenWindow& window, const std::string& beginning) {
    return soon([&] {
        return std::ranges::any_of(
            window.all(), [&](const std::string& line) { return line.starts_with(beginning); });
    });
}

ProgramResult close(OpenWindow& window) {
    OpenWindow::takeKeys();
    OpenWindow::press("ctrl+q");
    return window.finish();
}

/// The lines without what the toolkit's file dialog says when it is read out while it fills.
std::string withoutDialogsComplaints(const std::string& lines) {
    static const std::regex known("QAccessibleTable::child: Invalid index at: [0-9]+ [0-9]+");
    std::istringstream all(lines);
    std::string others;
    for (std::string line; std::getline(all, line);)
        if (!std::regex_match(line, known)) others += line + "\n";
    return others;
}

/// It ends as it should, and nothing has complained.
void expectQuietEnd(OpenWindow& window) {
    const auto result = close(window);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(withoutDialogsComplaints(result.err), "");
}

TEST(BildkurierWithTwoCameras, LetsChooseByKeyboardAlone) {
    OpenWindow window({.otherCards = {"zweite"}});
    const auto chosen = [&](const std::string& camera) {
        return soon([&] { return window.description("combo box", "Kamera") == camera; });
    };
    EXPECT_TRUE(chosen("karte"));
    EXPECT_TRUE(window.has("push button", "35 importieren"));

    ASSERT_TRUE(window.goTo("combo box", "Kamera"));
    OpenWindow::press("Down");
    EXPECT_TRUE(chosen("zweite"));
    EXPECT_TRUE(window.has("heading", "zweite"));
    EXPECT_TRUE(window.has("push button", "1 importieren"));

    OpenWindow::press("space");
    ASSERT_TRUE(window.has("list", "Kamera"));
    EXPECT_TRUE(soon([&] { return window.is("list item", "zweite", ATSPI_STATE_SELECTED); }));
    EXPECT_TRUE(window.has("list item", "karte"));
    EXPECT_FALSE(window.is("list item", "karte", ATSPI_STATE_SELECTED));
    OpenWindow::press("Up");
    EXPECT_TRUE(soon([&] { return window.is("list item", "karte", ATSPI_STATE_SELECTED); }));
    EXPECT_FALSE(window.is("list item", "zweite", ATSPI_STATE_SELECTED));
    OpenWindow::press("Return");
    EXPECT_TRUE(chosen("karte"));
    EXPECT_TRUE(window.has("heading", "karte"));
    expectQuietEnd(window);
}

TEST(BildkurierInItsSandbox, TellsThatAFolderIsToBeChosen) {
    OpenWindow window({.environment = {{"APP_SANDBOX_CONTAINER_ID", "x"}}});
    EXPECT_TRUE(window.has("alert", "Zielordner noch nicht freigegeben"));
    EXPECT_EQ(
        window.description("alert", "Zielordner noch nicht freigegeben"),
        "Bitte über „Ändern …“ einmal wählen. Die App merkt sich die Freigabe auch über einen "
        "Neustart.");
    EXPECT_TRUE(window.has("label", "Abgleich, sobald der Zielordner freigegeben ist"));
    EXPECT_TRUE(window.has("push button", "35 importieren"));
    EXPECT_EQ(window.description("push button", "35 importieren"), "Nicht verfügbar");
    EXPECT_EQ(window.description("push button", "Ändern …"), "");
    EXPECT_TRUE(window.goBackTo("push button", "Kamera und Zielordner neu einlesen"));
    EXPECT_TRUE(window.has("tool tip", "Kamera und Zielordner neu einlesen"));

    ASSERT_TRUE(window.goTo("push button", "Ändern …"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.has("push button", "Auswählen"));
    ASSERT_TRUE(window.givesKeysTo("dialog"));
    OpenWindow::type(window.destination);
    OpenWindow::press("Return");
    EXPECT_TRUE(window.has("status bar", "35 neue Dateien (6,8 MB) bereit zum Import."));
    EXPECT_EQ(window.description("push button", "35 importieren"), "");
    expectQuietEnd(window);
}

TEST(BildkurierWithAnEmptyCard, SaysWhatCanBeDone) {
    OpenWindow window({.camera = OpenWindow::Camera::emptyCard});
    EXPECT_TRUE(window.has("label", "Die Kamera meldet keine Dateien"));
    EXPECT_TRUE(window.has(
        "label", "Karte eingelegt? Sonst Kamera aus- und wieder einschalten und dann ↻ klicken."));
    EXPECT_EQ(window.description("push button", "Importieren"), "Nicht verfügbar");
    expectQuietEnd(window);
}

TEST(BildkurierWithAServer, TellsOfTheKeysOfBoth) {
    if (!SshServer::isInstalled()) GTEST_SKIP() << "needs /usr/sbin/sshd";
    SshServer server;
    const Url root = server.root();
    OpenWindow window;
    ASSERT_TRUE(window.goTo("radio button", "Ordner"));
    OpenWindow::press("Right");
    EXPECT_TRUE(window.has(
        "status bar",
        "Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und prüfen“."));
    EXPECT_EQ(window.description("push button", "35 importieren"), "Nicht verfügbar");
    ASSERT_TRUE(window.goTo("text", "Benutzer"));
    OpenWindow::type(root.user);
    OpenWindow::press("Tab");
    OpenWindow::type("127.0.0.1:" + std::to_string(*root.port));
    OpenWindow::press("Tab");
    OpenWindow::type(root.path);
    ASSERT_TRUE(window.goTo("push button", "Schlüssel übernehmen …"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.has("push button", "Übernehmen"));
    ASSERT_TRUE(window.givesKeysTo("dialog"));
    OpenWindow::type(server.login().keyFile.path);
    OpenWindow::press("Return");
    EXPECT_TRUE(window.has("alert", "Schlüssel übernommen."));

    OpenWindow::takeKeys();
    ASSERT_TRUE(window.goBackTo("push button", "Verbinden und prüfen"));
    std::latch answers(1);
    server.connection().slowDown({}, [&answers] { answers.wait(); });
    OpenWindow::press("space");
    EXPECT_TRUE(window.has("animation", "Verbinden und prüfen"));
    EXPECT_EQ(window.description("push button", "Verbinden und prüfen"), "Nicht verfügbar");
    server.connection().behave();
    answers.count_down();
    EXPECT_TRUE(window.has("alert", "Verbunden mit 127.0.0.1:" + std::to_string(*root.port) + "."));
    EXPECT_TRUE(tellsOf(window, "label: Erste Verbindung: Server-Schlüssel SHA256:"));
    EXPECT_TRUE(window.has("status bar", "35 neue Dateien (6,8 MB) bereit zum Import."));

    server.changeHostKey();
    OpenWindow::press("space");
    EXPECT_TRUE(window.has("alert",
                           "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. "
                           "Nur wenn der Server neu eingerichtet wurde: gespeicherten "
                           "Server-Schlüssel vergessen."));
    ASSERT_TRUE(window.goTo("push button", "Gespeicherten Server-Schlüssel vergessen"));
    OpenWindow::press("space");
    EXPECT_TRUE(window.hears("Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“."));
    ASSERT_TRUE(window.goBackTo("push button", "Verbinden und prüfen"));
    OpenWindow::press("space");
    EXPECT_TRUE(tellsOf(window, "label: Erste Verbindung: Server-Schlüssel SHA256:"));
    expectQuietEnd(window);
}

}  // namespace
}  // namespace bildkurier
