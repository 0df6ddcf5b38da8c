// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Desk.h"
#include "OpenWindow.h"
#include "Soon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// The window of the program that was built, open.
class BildkurierTest : public testing::Test {
protected:
    /// It ends as it should, and nothing has complained.
    void close() {
        OpenWindow::press("ctrl+q");
        const auto result = window.finish();
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.err, "");
    }

    OpenWindow window;
};

TEST_F(BildkurierTest, TellsOfEveryControlByRoleAndName) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    const auto all = window.all();
    for (const char* control : {
             "frame: Bildkurier",
             "radio button: Ordner",
             "radio button: SFTP",
             "push button: Ändern …",
             "push button: Im Finder zeigen",
             "check box: Nach Aufnahmetag ablegen",
             "check box: Nach Dateityp trennen",
             "check box: Beim Verbinden derselben Kamera fehlende Dateien importieren",
             "check box: Nur ab einem bestimmten Tag",
             "push button: Protokoll",
             "push button: Kamera und Zielordner neu einlesen",
             "push button: 35 importieren",
             "heading: Ziel",
             "heading: Automatisch nachziehen",
             "heading: Zeitraum",
             "heading: Neu zu importieren",
             "label: JPG: 24 (1.5 MB)",
             "status bar: 35 neue Dateien (6.8 MB) bereit zum Import.",
         }) {
        EXPECT_EQ(std::ranges::count(all, control), 1) << control;
    }
    close();
}

TEST_F(BildkurierTest, ImportsACardByKeyboardAlone) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    EXPECT_TRUE(window.hears("35 neue Dateien (6.8 MB) bereit zum Import."));
    ASSERT_TRUE(window.goTo("check box", "Nach Dateityp trennen"));
    OpenWindow::press("space");
    OpenWindow::press("Return");
    ASSERT_TRUE(window.has("push button", "Protokoll (36)"));
    ASSERT_TRUE(window.has("label", "Alles bereits im Zielordner"));
    EXPECT_TRUE(window.hears("Nichts Neues im gewählten Zeitraum."));
    EXPECT_EQ(std::distance(fs::directory_iterator(window.destination), fs::directory_iterator()),
              35);
    close();
}

TEST_F(BildkurierTest, MakesAKeyForServers) {
    ASSERT_TRUE(window.goTo("radio button", "Ordner"));
    OpenWindow::press("Right");
    ASSERT_TRUE(window.has("heading", "Schlüssel der App"));
    ASSERT_TRUE(window.goTo("push button", "Schlüssel erzeugen"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.has("push button", "Neuen Schlüssel erzeugen"));
    EXPECT_TRUE(window.hears(
        "Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server eintragen."));
    EXPECT_TRUE(fs::exists(window.home.path("data/Bildkurier/ssh/schluessel")));
    EXPECT_TRUE(fs::exists(window.home.path("data/Bildkurier/ssh/schluessel.pub")));
    close();
}

TEST_F(BildkurierTest, EndsWhenItsWindowIsClosed) {
    const Desk desk;
    const std::string only = Desk::windows().at(0);
    Desk::bringToFront(only);
    ASSERT_TRUE(soon([&] { return Desk::active() == only; }));
    Desk::close();
    const auto result = window.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(BildkurierTest, BringsItsWindowToTheFrontWhenStartedAgain) {
    const Desk desk;
    const std::string first = Desk::windows().at(0);
    Desk::bringToFront(first);
    const std::string frame = Desk::inFront();
    {
        // Another user's, for all that it knows.
        const OpenWindow other;
        ASSERT_TRUE(soon([] { return Desk::windows().size() == 2; }));
        const auto windows = Desk::windows();
        const std::string second = windows[windows[0] == first ? 1 : 0];
        Desk::bringToFront(second);
        ASSERT_TRUE(soon([&] { return Desk::active() == second && Desk::inFront() != frame; }));

        EXPECT_EQ(window.startAgain().exitStatus, 0);
        EXPECT_TRUE(soon([&] { return Desk::active() == first && Desk::inFront() == frame; }));
    }
    close();
}

TEST_F(BildkurierTest, OpensOneWindowOnly) {
    const auto second = window.startAgain();
    EXPECT_EQ(second.exitStatus, 0);
    EXPECT_EQ(second.err, "");
    close();
}

}  // namespace
}  // namespace bildkurier
