// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "Desk.h"
#include "OpenWindow.h"
#include "PrivateMounts.h"
#include "Soon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// The window of the program that was built, open.
class BildkurierTest : public testing::Test {
protected:
    /// Whether each of these is told of, or soon will be, and once: "push button: Importieren".
    void expectToldOf(std::vector<std::string> controls) const {
        std::string told;
        EXPECT_TRUE(soon([&] {
            const auto all = window.all();
            told.clear();
            for (const auto& line : all) told += line + "\n";
            std::erase_if(controls, [&](const auto& control) {
                return std::ranges::count(all, control) == 1;
            });
            return controls.empty();
        })) << testing::PrintToString(controls)
            << "\n"
            << told;
    }

    void readAnew() const {
        ASSERT_TRUE(window.goTo("push button", "Kamera und Zielordner neu einlesen"));
        OpenWindow::press("space");
    }

    /// It ends as it should, and nothing has complained.
    void close() {
        OpenWindow::press("ctrl+q");
        const auto result = window.finish();
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.err, "");
    }

    /// It ends as it was asked to, and leaves nothing behind.
    void expectCleanEnd() {
        const auto result = window.finish();
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.signal, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_FALSE(fs::exists(staging));
    }

    const bool isPrivate = mountPrivately();  ///< what is mounted in a test, which the window sees
    OpenWindow window;
    const std::string staging = window.destination + "/.bildkurier-tmp";
};

/// A film is on the card, which can be read no further than the test lets it.
class BildkurierFilmTest : public BildkurierTest {
protected:
    void SetUp() override {
        const std::string folder = window.card + "/DCIM/200BILDK";
        const std::string backing = window.home.makeFolder("film");
        fs::create_directory(folder);
        if (isPrivate) reader = std::make_unique<CardLikeVolume>(folder, backing);
        if (!reader || !reader->isMounted()) {
            GTEST_SKIP() << "mounting takes root and a kernel with file systems in user space";
        }
    }

    /// Puts a film on the card, begins the import, and returns while the film is on its way.
    void importFilm(std::uintmax_t size) {
        const std::string film = window.home.path("film/FILM.MP4");
        std::ofstream(film) << "";
        fs::resize_file(film, size);
        // Files are loaded in the order in which they were shot.
        const std::chrono::sys_seconds longAgo =
            std::chrono::sys_days(std::chrono::January / 1 / 1990);
        fs::last_write_time(film, fs::file_time_type::clock::from_sys(longAgo));
        ASSERT_NO_FATAL_FAILURE(readAnew());
        ASSERT_TRUE(window.has("push button", "36 importieren"));
        reader->gate().closeAt(aLittle / 2);
        OpenWindow::press("Return");
        ASSERT_TRUE(soon([&] { return fs::exists(staging + "/FILM.MP4"); }));
    }

    /// Lets the film go on until the program has ended, far from the film's end.
    void goOnUntilTheEnd() {
        EXPECT_TRUE(soon([&] {
            reader->gate().letThrough(aLittle);
            return window.hasEnded();
        }));
    }

    std::vector<std::string> imported() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(window.destination))
            if (entry.is_regular_file()) names.push_back(entry.path().filename());
        return names;
    }

    static constexpr std::uintmax_t aLittle = 1U << 20U;
    static constexpr std::uintmax_t endless = 1U << 30U;
    std::unique_ptr<CardLikeVolume> reader;
};

TEST_F(BildkurierTest, TellsOfEveryControlByRoleAndName) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    expectToldOf({
        "frame: Bildkurier",
        "menu bar: Hilfe",
        "radio button: Ordner",
        "radio button: SFTP",
        "text: " + window.destination,
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
        "label: JPG: 24 (1,5 MB)",
        "status bar: 35 neue Dateien (6,8 MB) bereit zum Import.",
    });
    EXPECT_FALSE(window.is("check box", "Nur ab einem bestimmten Tag", ATSPI_STATE_CHECKED));
    ASSERT_TRUE(window.goTo("check box", "Nur ab einem bestimmten Tag"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.goTo("push button", "Protokoll"));
    OpenWindow::press("space");
    expectToldOf({"slider: Nur ab einem bestimmten Tag", "label: Noch nichts importiert"});
    EXPECT_TRUE(window.is("check box", "Nur ab einem bestimmten Tag", ATSPI_STATE_CHECKED));
    EXPECT_TRUE(window.is("radio button", "Ordner", ATSPI_STATE_CHECKED));
    EXPECT_FALSE(window.is("radio button", "SFTP", ATSPI_STATE_CHECKED));
    close();
}

TEST_F(BildkurierTest, TellsOfItsMenu) {
    ASSERT_TRUE(window.goTo("menu bar", "Hilfe"));
    OpenWindow::press("space");
    expectToldOf({"menu item: Bildkurier Support", "menu item: Datenschutz"});
    OpenWindow::press("Escape");
    EXPECT_TRUE(
        soon([&] { return std::ranges::count(window.all(), "menu item: Datenschutz") == 0; }));
    close();
}

TEST_F(BildkurierTest, TellsOfEveryControlForServers) {
    ASSERT_TRUE(window.goTo("radio button", "Ordner"));
    OpenWindow::press("Right");
    expectToldOf({
        "text: Benutzer",
        "text: Rechner",
        "text: Ordner",
        "push button: Verbinden und prüfen",
        "heading: Schlüssel der App",
        "push button: Schlüssel erzeugen",
        "push button: Schlüssel übernehmen …",
    });
    EXPECT_TRUE(window.is("radio button", "SFTP", ATSPI_STATE_CHECKED));
    EXPECT_TRUE(window.is("text", "Benutzer", ATSPI_STATE_EDITABLE));
    ASSERT_TRUE(window.goTo("push button", "Schlüssel erzeugen"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.has("push button", "Neuen Schlüssel erzeugen"));
    std::string key;
    std::getline(std::ifstream(window.home.path("data/Bildkurier/ssh/schluessel.pub")), key);
    expectToldOf({
        "text: " + key,
        "push button: Kopieren",
        "push button: Neuen Schlüssel erzeugen",
        "push button: Schlüssel übernehmen …",
        "push button: Schlüssel der App löschen",
    });
    ASSERT_TRUE(window.goBackTo("push button", "Kopieren"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.goBackTo("text", "Benutzer"));
    OpenWindow::press("ctrl+v");
    EXPECT_TRUE(soon([&] { return window.text("Benutzer") == key; })) << window.text("Benutzer");
    ASSERT_TRUE(window.goTo("push button", "Neuen Schlüssel erzeugen"));
    OpenWindow::press("space");
    expectToldOf({"dialog: Neuen Schlüssel erzeugen?", "push button: Abbrechen"});
    ASSERT_TRUE(soon([&] { return window.is("push button", "Abbrechen", ATSPI_STATE_FOCUSED); }));
    EXPECT_TRUE(window.goTo("push button", "Neuen Schlüssel erzeugen"));
    EXPECT_TRUE(window.goBackTo("push button", "Abbrechen"));
    OpenWindow::press("Return");
    EXPECT_TRUE(soon([&] {
        return std::ranges::count(window.all(), "dialog: Neuen Schlüssel erzeugen?") == 0;
    }));
    close();
}

TEST_F(BildkurierFilmTest, TellsThatItReadsAndThatTheDestinationIsOnTheNetwork) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    const CardLikeVolume share(window.destination, window.home.makeFolder("freigabe"),
                               "sftp://nas.local/fotos");
    window.home.write("film/BILD.JPG", "ein Bild");
    reader->gate().closeAt(0);
    ASSERT_NO_FATAL_FAILURE(readAnew());
    expectToldOf({"animation: Lese Speicherkarte …", "animation: Lese Dateiliste der Karte(n) …"});
    reader->gate().open();
    EXPECT_TRUE(window.has("push button", "36 importieren"));
    EXPECT_TRUE(std::ranges::none_of(
        window.all(), [](const std::string& line) { return line.starts_with("animation:"); }));
    const std::string warning = "Ziel liegt auf einer Netzwerkfreigabe";
    EXPECT_TRUE(window.has("alert", warning));
    EXPECT_EQ(
        window.description("alert", warning),
        "Der Import dauert dort ein Vielfaches und bricht eher ab. Besser erst auf eine lokale "
        "Platte laden und danach übertragen.");
    close();
}

TEST_F(BildkurierFilmTest, TellsOfAnImport) {
    ASSERT_NO_FATAL_FAILURE(importFilm(aLittle));
    expectToldOf({"progress bar: Lade 1 von 36: FILM.MP4", "push button: Abbrechen"});
    EXPECT_TRUE(window.hears("Lade 1 von 36: FILM.MP4"));
    EXPECT_TRUE(soon([&] {
        return std::ranges::any_of(window.all(), [](const std::string& line) {
            return line.contains(": Geschwindigkeit ") && line.contains(", Durchschnitt ");
        });
    }));
    reader->gate().open();
    EXPECT_TRUE(window.has("label", "Alles bereits im Zielordner"));
    close();
}

TEST_F(BildkurierFilmTest, IsCancelledByKeyboard) {
    ASSERT_NO_FATAL_FAILURE(importFilm(aLittle));
    // The button for importing, which would take the focus with it, makes room for this one.
    ASSERT_TRUE(window.has("push button", "Abbrechen"));
    ASSERT_TRUE(window.goTo("push button", "Abbrechen"));
    OpenWindow::press("space");
    EXPECT_TRUE(window.hears("Breche nach der aktuellen Datei ab …"));
    reader->gate().open();
    EXPECT_TRUE(window.has("push button", "35 importieren"));
    EXPECT_EQ(imported(), std::vector<std::string>{"FILM.MP4"});
    close();
}

TEST_F(BildkurierTest, ImportsACardByKeyboardAlone) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    EXPECT_TRUE(window.hears("35 neue Dateien (6,8 MB) bereit zum Import."));
    ASSERT_TRUE(window.goTo("check box", "Nach Dateityp trennen"));
    OpenWindow::press("space");
    OpenWindow::press("Return");
    ASSERT_TRUE(window.has("push button", "Protokoll (36)"));
    ASSERT_TRUE(window.goTo("push button", "Protokoll (36)"));
    OpenWindow::press("space");
    EXPECT_TRUE(window.has("text", "Protokoll"));
    ASSERT_TRUE(window.has("label", "Alles bereits im Zielordner"));
    EXPECT_TRUE(window.hears("Nichts Neues im gewählten Zeitraum."));
    EXPECT_EQ(std::distance(fs::directory_iterator(window.destination), fs::directory_iterator()),
              35);
    close();
}

TEST(BildkurierAtDoubleScale, ImportsACardByKeyboardAlone) {
    OpenWindow window({.environment = {{"QT_SCALE_FACTOR", "2"}}});
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    OpenWindow::press("Return");
    // What is scrolled out of view is not told of.
    EXPECT_TRUE(window.hears("Nichts Neues im gewählten Zeitraum."));
    EXPECT_TRUE(window.goTo("push button", "Protokoll (36)"));
    EXPECT_TRUE(window.has("push button", "Protokoll (36)"));
    OpenWindow::press("ctrl+q");
    const auto result = window.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
}

class BildkurierWithoutADisplay : public testing::Test {
protected:
    ProgramResult run(std::vector<std::string> arguments) const {
        return ProgramCall{.path = BILDKURIER,
                           .arguments = std::move(arguments),
                           .environment = {{"HOME", home.path()},
                                           {"XDG_CONFIG_HOME", home.path("config")},
                                           {"XDG_RUNTIME_DIR", home.path("run")},
                                           {"DISPLAY", ""},
                                           {"WAYLAND_DISPLAY", ""},
                                           {"QT_QPA_PLATFORM", ""}}}
            .run();
    }

    const TemporaryFolder home;
};

TEST_F(BildkurierWithoutADisplay, SaysSo) {
    home.makeFolder("run");
    const auto result = run({});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "Das Fenster lässt sich nicht öffnen: kein Bildschirm gefunden (DISPLAY, "
              "WAYLAND_DISPLAY).\nOhne Bildschirm importiert bildkurier-cli.\n");
}

TEST_F(BildkurierWithoutADisplay, AnswersWhatNeedsNone) {
    const auto version = run({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_TRUE(version.out.starts_with("Bildkurier ")) << version.out;
    EXPECT_EQ(version.err, "");
    const auto wrong = run({"--unsinn"});
    EXPECT_EQ(wrong.exitStatus, 2);
    EXPECT_EQ(wrong.out, "");
    EXPECT_EQ(wrong.err, "Unbekannte Angabe: --unsinn\nMehr dazu: bildkurier --help\n");
    const auto card = run({"--card", home.path("weg")});
    EXPECT_EQ(card.exitStatus, 3);
    EXPECT_EQ(card.err, "Die Karte „" + home.path("weg") + "“ ist kein lesbarer Ordner.\n");
}

TEST_F(BildkurierTest, WritesCountsAsItWritesSizes) {
    ASSERT_TRUE(window.has("push button", "35 importieren"));
    for (int i = 1; i <= 1000; ++i)
        std::ofstream(window.card + "/DCIM/100BILDK/N" + std::to_string(i) + ".JPG") << "x";
    ASSERT_NO_FATAL_FAILURE(readAnew());
    EXPECT_TRUE(window.has("push button", "1.035 importieren"));
    EXPECT_TRUE(window.has("label", "JPG: 1.024 (1,5 MB)"));
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
    const std::string only = Desk::windows(1).at(0);
    Desk::bringToFront(only);
    ASSERT_TRUE(soon([&] { return Desk::active() == only; }));
    Desk::close();
    const auto result = window.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(BildkurierTest, BringsItsWindowToTheFrontWhenStartedAgain) {
    const Desk desk;
    const std::string first = Desk::windows(1).at(0);
    Desk::bringToFront(first);
    const std::string frame = Desk::inFront();
    {
        // Another user's, for all that it knows.
        const OpenWindow other;
        const auto windows = Desk::windows(2);
        const std::string& second = windows[windows[0] == first ? 1 : 0];
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

TEST_F(BildkurierTest, SaysThatAnOpenWindowTakesNoOtherCard) {
    const auto second = window.startAgain({"--card", window.card});
    EXPECT_EQ(second.exitStatus, 1);
    EXPECT_EQ(second.err,
              "Das Fenster ist schon offen, und der Ordner von --card wurde nicht als Kamera "
              "genommen. Erst das Fenster schließen.\n");
    const auto help = window.startAgain({"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_NE(help.out.find("--card ORDNER"), std::string::npos) << help.out;
    close();
}

TEST_F(BildkurierFilmTest, LetsTheFileInHandArriveWhenItIsAskedToEnd) {
    ASSERT_NO_FATAL_FAILURE(importFilm(aLittle));
    window.send(SIGTERM);
    EXPECT_TRUE(window.has("status bar", "Breche nach der aktuellen Datei ab …"));
    reader->gate().open();
    expectCleanEnd();
    EXPECT_EQ(imported(), std::vector<std::string>{"FILM.MP4"});
    EXPECT_EQ(fs::file_size(window.destination + "/MP4/FILM.MP4"), aLittle);
}

TEST_F(BildkurierFilmTest, EndsInTheMiddleOfAFileWhenItIsAskedTwice) {
    ASSERT_NO_FATAL_FAILURE(importFilm(endless));
    window.send(SIGTERM);
    window.send(SIGINT);
    goOnUntilTheEnd();
    expectCleanEnd();
    EXPECT_EQ(imported(), std::vector<std::string>());
}

TEST_F(BildkurierFilmTest, EndsInTheMiddleOfAFileWhenItIsClosed) {
    ASSERT_NO_FATAL_FAILURE(importFilm(endless));
    OpenWindow::press("ctrl+q");
    goOnUntilTheEnd();
    expectCleanEnd();
    EXPECT_EQ(imported(), std::vector<std::string>());
}

TEST_F(BildkurierTest, EndsWhenItIsAskedToWithoutAnImport) {
    window.send(SIGTERM);
    expectCleanEnd();
}

}  // namespace
}  // namespace bildkurier
