// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FailingFileStore.h"
#include "FakeServer.h"
#include "Formatting.h"
#include "ImportCommand.h"
#include "LocalDay.h"
#include "MemoryContentReader.h"
#include "ModelCommandTest.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace bildkurier {
namespace {

using Command = CommandLine::Command;

class ImportCommandTest : public ModelCommandTest {
protected:
    ImportCommandTest() { settings->storedByType = false; }

    void makeCommand() {
        if (options.since) settings->storedUseFromDate = true;
        make();
        proof = std::make_shared<CardProof>(
            CardProof::Collaborators{.reader = std::make_shared<MemoryContentReader>(store),
                                     .fileStore = files,
                                     .keyring = keyring,
                                     .runLock = lock,
                                     .staging = Url::file("/cache")},
            loop, loop);
        command = std::make_shared<ImportCommand>(options, model, proof, access, files, keyring,
                                                  lock, loop, loop, report, done());
    }

    std::shared_ptr<FakeCamera> attach(const std::string& id) {
        if (!command) makeCommand();
        return ModelCommandTest::attach(id);
    }

    void begin() {
        if (!command) makeCommand();
        command->begin();
        loop.settle();
    }

    /// Another command in place of the last one.
    void another(Command which) {
        options.command = which;
        command.reset();
        ends.clear();
    }

    /// Begins, and has the camera read.
    void run(FakeCamera& camera) {
        begin();
        deliver(camera);
    }

    void lose(const std::shared_ptr<FakeCamera>& camera) {
        model->cameraBrowserDidRemove(camera);
        loop.settle();
    }

    /// A camera that was lost while its only file was being loaded.
    std::shared_ptr<FakeCamera> lost(std::optional<Date> shot = std::nullopt) {
        auto camera = attach("A");
        file(*camera, "A.JPG", "aaaa", shot)->holdsBack = true;
        run(*camera);
        lose(camera);
        return camera;
    }

    /// Makes a server the destination.
    std::shared_ptr<FakeServer> haveServer() {
        settings->storedKind = DestinationKind::sftp;
        settings->storedUser = "anna";
        settings->storedHost = "nas";
        settings->storedPath = "/fotos";
        const auto server = std::make_shared<FakeServer>(store, keyring);
        files = server;
        return server;
    }

    void addUnreadableFolder(FakeCamera& card, Date shot) {
        const auto folder = file(card, "101BILDK", "", shot);
        folder->knownObstacle = Error{"Ordner 101BILDK ist nicht lesbar"};
    }

    /// As if nothing had been attached, loaded or reported yet.
    void again() {
        command.reset();
        cameras.clear();
        ends.clear();
        reported();
        store->removeItem(Url::file("/bilder"));
    }

    static std::string vanishedLine(int files) {
        if (files == 1) {
            return "✗ 1 Datei ist seit der Trennung nicht mehr auf der Karte und wurde nicht "
                   "geladen.";
        }
        return "✗ " + std::to_string(files) +
               " Dateien sind seit der Trennung nicht mehr auf der Karte und wurden nicht geladen.";
    }

    /// Of the only file, four bytes long.
    static Lines summedUp(bool isLoaded, bool cancelled = false) {
        const std::string end = cancelled ? ", abgebrochen" : "";
        return {isLoaded ? "Fertig: 1 geladen (" + formatBytes(4) + ")" + end
                         : "Fertig: 0 geladen (" + formatBytes(0) + ")" + end,
                std::string("finished: ") + (isLoaded ? "1" : "0") + "/1 done, 0 failed" +
                    (cancelled ? ", cancelled" : "")};
    }

    /// The latest lines that were reported, as many as that.
    Lines latest(std::ptrdiff_t count) const {
        return {report.lines.end() - std::min(count, std::ssize(report.lines)), report.lines.end()};
    }

    /// An import that has begun ended with its summary, and the command after it with an error.
    void expectSummaryAndError() const {
        Lines lines = latest(3);
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_TRUE(lines.back().starts_with("error: ")) << lines.back();
        lines.pop_back();
        EXPECT_EQ(lines, summedUp(false));
    }

    static constexpr auto unreadableFolder = "✗ 101BILDK: Ordner 101BILDK ist nicht lesbar";
    CommandLine options{.command = Command::import};
    std::shared_ptr<CardProof> proof;
    std::shared_ptr<ImportCommand> command;
};

TEST_F(ImportCommandTest, ListsCameras) {
    options.command = Command::cameras;
    attach("A");
    attach("B");
    begin();
    EXPECT_EQ(reported(), (Lines{"camera: A", "camera: B"}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, SaysWhenThereIsNoCamera) {
    for (const Command which : {Command::cameras, Command::plan, Command::import}) {
        another(which);
        begin();
        EXPECT_EQ(reported(), (Lines{"error: Keine Kamera gefunden."}));
        expectEnd(ExitStatus::noCamera);
    }
}

TEST_F(ImportCommandTest, FindsACameraByNameOrIdentity) {
    for (const std::string wish : {"Kamera B", "serial:B"}) {
        options.camera = wish;
        command.reset();
        attach("A");
        const auto wanted = attach("B");
        begin();
        EXPECT_EQ(model->selectedID(), "B");
        EXPECT_EQ(wanted->opened, 1);
        EXPECT_TRUE(ends.empty());
    }
    options.camera = "serial:C";
    command.reset();
    attach("A");
    begin();
    EXPECT_EQ(reported(), (Lines{"error: Kamera „serial:C“ nicht gefunden."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, SaysWhichCameraCannotTellYetWhoItIs) {
    options.camera = "serial:B";
    attach("A");
    const auto held = attached(camera("C", "persistent:usb"));
    held->identityIsFinal = false;
    begin();
    EXPECT_EQ(
        reported(),
        (Lines{"error: Kamera „serial:B“ nicht gefunden. Die Kennung der Kamera Kamera C ist "
               "noch nicht bekannt: Ein anderes Programm benutzt sie, sie antwortet nicht, oder "
               "der angegebene Ordner ist leer."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, FindsACameraByWhatItWasKnownAsBefore) {
    options.camera = "persistent:usb";
    attach("A");
    attach("B")->formerIdentity = "persistent:usb";
    begin();
    EXPECT_EQ(model->selectedID(), "B");
}

TEST_F(ImportCommandTest, FindsACameraWithoutANameByTheOneItIsShownWith) {
    options.camera = "Kamera";
    attach("A");
    const auto nameless = attach("B");
    nameless->deviceName.reset();
    begin();
    EXPECT_EQ(model->selectedID(), "B");
}

TEST_F(ImportCommandTest, WantsToKnowWhichOfSeveralCameras) {
    attach("A");
    attach("B");
    begin();
    EXPECT_EQ(reported(),
              (Lines{"error: Mehrere Kameras gefunden; bitte mit --camera eine wählen."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, ImportsTheGivenCardsOneAfterTheOther) {
    options.cards = {"/a", "/b"};
    const auto first = attach("A");
    const auto second = attach("B");
    file(*first, "A.JPG", "aaaa");
    file(*second, "a.jpg", "aaaa");
    file(*second, "B.JPG", "bb");
    begin();
    deliver(*first);
    deliver(*second);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    EXPECT_EQ(
        reported(),
        (Lines{"camera: A", "importing: 1/1 files, 4 bytes, 1 JPG",
               "✓ bilder/A.JPG  (" + formatBytes(4) + ")",
               "Fertig: 1 geladen (" + formatBytes(4) + ")", "finished: 1/1 done, 0 failed",
               "camera: B", "importing: 1/2 files, 2 bytes, 1 JPG",
               "✓ bilder/B.JPG  (" + formatBytes(2) + ")",
               "Fertig: 1 geladen (" + formatBytes(2) + ")", "finished: 1/1 done, 0 failed"}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, ImportsTheSecondCardWhateverComesOfTheFirst) {
    const auto refused = [](FakeCamera& camera) { camera.sessionOpened(Error{"belegt"}); };
    const auto pulled = [this](const std::shared_ptr<FakeCamera>& camera) { lose(camera); };
    std::shared_ptr<FakeCameraFile> held;
    const struct {
        const char* what;
        std::function<void(const std::shared_ptr<FakeCamera>&)> trouble;
        std::string error;
        ExitStatus status;
    } cases[] = {
        {"refused", [&](const auto& camera) { refused(*camera); },
         "error: Verbindung fehlgeschlagen: belegt. „Digitale Bilder“, „Fotos“ und "
         "Canon-Software schließen, dann Kamera neu verbinden.",
         ExitStatus::noCamera},
        {"pulled", pulled, "error: Die Kamera wurde getrennt.", ExitStatus::noCamera},
        {"pulled in its import",
         [&](const auto& camera) {
             camera->deviceIdentity.reset();
             held->holdsBack = true;
             deliver(*camera);
             lose(camera);
         },
         "error: Import gestoppt: Die Kamera trennt sich wiederholt, ohne dass etwas ankommt. "
         "Originalkabel direkt am Mac probieren (ohne Hub) und Akku der Kamera prüfen.",
         ExitStatus::filesFailed},
        {"in the destination",
         [&](const auto& camera) {
             camera->folder = Url::file("/bilder");
             deliver(*camera);
         },
         std::string("error: ") + ImportModel::overlapStatus, ExitStatus::destinationUnusable},
    };
    for (const auto& [what, trouble, error, status] : cases) {
        SCOPED_TRACE(what);
        again();
        options.cards = {"/a", "/b"};
        const auto first = attach("A");
        const auto second = attach("B");
        held = file(*first, "A.JPG", "aaaa");
        file(*second, "B.JPG", "bb");
        begin();
        trouble(first);
        loop.settle();
        EXPECT_TRUE(ends.empty());
        deliver(*second);
        EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"B.JPG", "bb"}}));
        EXPECT_EQ(std::ranges::count(report.lines, error), 1);
        EXPECT_EQ(report.lines.back(), "finished: 1/1 done, 0 failed");
        expectEnd(status);
    }
}

TEST_F(ImportCommandTest, DoesNotPassOverACardThatIsNotThere) {
    options.cards = {"/", "/b"};
    attach("A");
    begin();
    EXPECT_EQ(reported(), (Lines{"error: Die Karte „/b“ ist kein lesbarer Ordner."}));
    expectEnd(ExitStatus::noCamera);

    options.cards = {"/c"};
    another(Command::import);
    begin();
    EXPECT_EQ(reported(), (Lines{"error: Die Karte „/c“ ist kein lesbarer Ordner."}));

    for (const Command which : {Command::cameras, Command::plan, Command::import}) {
        another(which);
        options.cards = {"/", "/"};
        attach("A");
        begin();
        EXPECT_EQ(reported().back(), "error: Nur 1 von 2 angegebenen Karten gefunden.");
        expectEnd(ExitStatus::noCamera);
    }
}

TEST_F(ImportCommandTest, PlansWithoutTouchingTheDestination) {
    options.command = Command::plan;
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder/CR3")));
    store->files["/bilder/CR3/old.cr3"] = "ooo";
    const auto camera = attach("A");
    file(*camera, "OLD.CR3", "ooo");
    file(*camera, "A.JPG", "aaaa");
    file(*camera, "B.CR3", "bb");
    run(*camera);
    EXPECT_EQ(reported(), (Lines{"plan: 2/3 files, 6 bytes, 1 CR3, 1 JPG"}));
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"CR3/", ""}, {"CR3/old.cr3", "ooo"}}));
    EXPECT_FALSE(lock->held);
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, LeavesOutWhatWasShotBeforeTheDay) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "OLD.JPG", "a")->shot = *options.since - std::chrono::milliseconds(1);
    file(*camera, "NEW.JPG", "b")->shot = *options.since;
    file(*camera, "LATER.JPG", "bb")->shot = *options.since + std::chrono::days(3);
    file(*camera, "UNDATED.JPG", "c");
    run(*camera);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"LATER.JPG", "bb"}, {"NEW.JPG", "b"}}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, TakesTheNextDayWhereNothingWasShotOnTheOneAskedFor) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "OLD.JPG", "a")->shot = *options.since - std::chrono::days(1);
    file(*camera, "NEXT.JPG", "b")->shot = *options.since + std::chrono::days(1);
    file(*camera, "LAST.JPG", "bb")->shot = *options.since + std::chrono::days(2);
    run(*camera);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"LAST.JPG", "bb"}, {"NEXT.JPG", "b"}}));
}

TEST_F(ImportCommandTest, LoadsNothingWhenAllWasShotBeforeTheDay) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "OLD.JPG", "a")->shot = *options.since - std::chrono::days(1);
    run(*camera);
    EXPECT_EQ(reported(), (Lines{"importing: 0/1 files, 0 bytes", "finished: 0/0 done, 0 failed"}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, TellsOfAnUnreadableFolderWhenAllWasShotBeforeTheDay) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "OLD.JPG", "a")->shot = *options.since - std::chrono::days(1);
    addUnreadableFolder(*camera, *options.since);
    begin();
    deliver(*camera);
    EXPECT_EQ(reported(), (Lines{"importing: 0/2 files, 0 bytes", unreadableFolder,
                                 "finished: 0/1 done, 1 failed"}));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, TellsOfAnUnreadableFolderOnce) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "NEW.JPG", "b")->shot = *options.since;
    addUnreadableFolder(*camera, *options.since);
    begin();
    deliver(*camera);
    EXPECT_EQ(std::ranges::count(report.lines, unreadableFolder), 1);
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, TellsOfAnUnreadableFolderBesidePicturesOfLaterDays) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "NEW.JPG", "b")->shot = *options.since + std::chrono::days(2);
    addUnreadableFolder(*camera, *options.since + std::chrono::days(1));
    begin();
    deliver(*camera);
    EXPECT_EQ(std::ranges::count(report.lines, unreadableFolder), 1);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"NEW.JPG", "b"}}));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, FailsForEveryUnreadableFolderWhateverTheDestinationHolds) {
    store->files["/bilder/101bildk"] = "";
    const auto camera = attach("A");
    addUnreadableFolder(*camera, Date());
    addUnreadableFolder(*camera, Date());
    run(*camera);
    EXPECT_EQ(std::ranges::count(report.lines, unreadableFolder), 2);
    EXPECT_EQ(report.lines.back(), "finished: 0/2 done, 2 failed");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, SucceedsWhenThereIsNothingToDo) {
    const auto camera = attach("A");
    run(*camera);
    EXPECT_EQ(reported(), (Lines{"importing: 0/0 files, 0 bytes", "finished: 0/0 done, 0 failed"}));
    EXPECT_EQ(store->folders.count("/bilder"), 0);
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, TellsOfFilesThatFailed) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->error = Error{"Lesefehler"};
    file(*camera, "B.JPG", "bb");
    run(*camera);
    EXPECT_EQ(report.lines.back(), "finished: 1/2 done, 1 failed");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, GivesUpOnADestinationThatIsAFile) {
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        store->files["/bilder"] = "a file";
        file(*attach("A"), "A.JPG", "aaaa");
        begin();
        EXPECT_EQ(reported(), (Lines{"error: Der Zielordner ist kein Ordner."}));
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, MakesNoFolderAnewThatWasChosenAndIsGone) {
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        access->restorable = Url::file("/bilder");
        file(*attach("A"), "A.JPG", "aaaa");
        begin();
        EXPECT_EQ(reported(),
                  (Lines{"error: Der Zielordner /bilder ist nicht mehr da. Ist die Platte "
                         "angesteckt? Mit --to würde er neu angelegt."}));
        EXPECT_FALSE(store->fileExists(Url::file("/bilder")));
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, GivesUpOnAServerThatCannotBeReached) {
    haveServer()->refusal = "Connection refused";
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        attach("A");
        begin();
        EXPECT_EQ(reported(),
                  (Lines{"error: Ordner lässt sich nicht anlegen: Connection refused"}));
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, PlansNothingForAServerThatItCouldNotList) {
    haveServer()->breakOfListings = "Broken pipe";
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        const auto camera = attach("A");
        file(*camera, "A.JPG", "aaaa");
        run(*camera);
        const Lines lines = reported();
        ASSERT_EQ(lines.size(), 2);
        EXPECT_TRUE(lines[0].ends_with("nicht vollständig aufgelistet: Broken pipe")) << lines[0];
        EXPECT_EQ(lines[1], std::string("error: ") + ImportModel::unlistedStatus);
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, ShowsTheKeyOfAServerThatItMeetsForTheFirstTime) {
    haveServer();
    keyring->key = "ssh-ed25519 abc";
    const std::string notice =
        "status: Erste Verbindung: Server-Schlüssel SHA256:erster (ED25519) gespeichert. Mit dem "
        "Fingerabdruck auf dem Server vergleichen.";
    for (const Command which : {Command::plan, Command::import}) {
        options.command = which;
        keyring->hosts.clear();
        for (const bool isFirst : {true, false}) {
            command.reset();
            attach("A");
            begin();
            EXPECT_EQ(std::ranges::count(reported(), notice), isFirst ? 1 : 0);
        }
    }
}

TEST_F(ImportCommandTest, RefusesAServerThatShowsAnotherKey) {
    haveServer();
    keyring->key = "ssh-ed25519 abc";
    keyring->hosts[{"nas", std::nullopt}] = "SHA256:zweiter (ED25519)";
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        attach("A");
        begin();
        EXPECT_EQ(reported(), (Lines{"error: Der Server zeigt einen anderen Schlüssel als beim "
                                     "ersten Verbinden. Nur wenn der Server neu eingerichtet "
                                     "wurde: gespeicherten Server-Schlüssel vergessen."}));
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, MakesNoFolderOnAServerForAPlan) {
    haveServer();
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        const auto camera = attach("A");
        file(*camera, "A.JPG", "aaaa");
        begin();
        EXPECT_EQ(store->fileExists(Url::file("/fotos")), which == Command::import);
        deliver(*camera);
        expectEnd(ExitStatus::success);
    }
    EXPECT_EQ(store->files["/fotos/A.JPG"], "aaaa");
}

TEST_F(ImportCommandTest, ChoosesNoCameraOnceInterruptedWhileItReachesTheServer) {
    haveServer();
    options.camera = "serial:B";
    attach("A");
    attach("B");
    command->begin();
    command->interrupt();
    loop.settle();
    EXPECT_EQ(model->selectedID(), "A");
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, GivesUpOnADestinationThatOverlapsWithTheCard) {
    for (const Command which : {Command::plan, Command::import}) {
        another(which);
        store->files["/bilder/A.JPG"] = "aaaa";
        const auto camera = attach("A");
        camera->folder = Url::file("/bilder");
        file(*camera, "A.JPG", "aaaa");
        run(*camera);
        EXPECT_EQ(reported(),
                  (Lines{"error: Karte und Zielordner liegen ineinander; bitte einen anderen "
                         "Zielordner wählen."}));
        expectEnd(ExitStatus::destinationUnusable);
    }
}

TEST_F(ImportCommandTest, PlansForADestinationThatMayOnlyBeRead) {
    options.command = Command::plan;
    const auto failing = std::make_shared<FailingFileStore>(store);
    failing->failAt = 0;
    failing->forGood = true;
    files = failing;
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder")));
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    run(*camera);
    EXPECT_EQ(reported(), (Lines{"plan: 1/1 files, 4 bytes, 1 JPG"}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, GivesUpWhenTheRunCannotStart) {
    store->capacity = 1000;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    run(*camera);
    EXPECT_EQ(report.lines.back(),
              "error: Kann Zielordner nicht beschreiben: Zu wenig Platz für die größte Datei (" +
                  formatBytes(4) + " nötig, " + formatBytes(1000) + " frei).");
    EXPECT_FALSE(lock->held);
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(ImportCommandTest, GivesUpWhileAnotherImportRuns) {
    lock->takenByAnother = true;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    run(*camera);
    EXPECT_EQ(reported(), Lines{"error: Es läuft schon ein Import."});
    EXPECT_FALSE(store->folders.contains("/bilder"));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(ImportCommandTest, ReportsASessionThatCannotBeOpened) {
    const auto camera = attach("A");
    begin();
    camera->sessionOpened(Error{"Zugriff verweigert"});
    loop.settle();
    EXPECT_EQ(reported(),
              (Lines{"error: Verbindung fehlgeschlagen: Zugriff verweigert. „Digitale Bilder“, "
                     "„Fotos“ und Canon-Software schließen, dann Kamera neu verbinden."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, EndsWhenTheCameraGoesBeforeTheImport) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    begin();
    camera->sessionOpened();
    camera->catalogReady();
    lose(camera);
    EXPECT_EQ(reported(), (Lines{"error: Die Kamera wurde getrennt."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, GoesOnWhenTheCameraReturns) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    const auto second = file(*camera, "B.JPG", "bb");
    second->holdsBack = true;
    run(*camera);
    reported();
    lose(camera);
    EXPECT_EQ(report.lines.back(),
              "status: Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist.");
    EXPECT_TRUE(ends.empty());
    reported();

    second->holdsBack = false;
    deliver(*returned(*camera));
    const Lines lines = reported();
    EXPECT_EQ(std::ranges::count(lines, "importing: 1/2 files, 2 bytes, 1 JPG"), 1)
        << "what is left of it";
    EXPECT_EQ(lines.back(), "finished: 1/1 done, 0 failed");
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, IsDoneWhenNothingIsMissingAfterTheReturn) {
    const auto camera = attach("A");
    const auto only = file(*camera, "A.JPG", "aaaa");
    only->holdsBack = true;
    run(*camera);
    lose(camera);
    store->files["/bilder/A.JPG"] = "aaaa";
    reported();
    deliver(*returned(*camera));
    EXPECT_EQ(latest(3).front(), "status: Nach der Trennung fehlt nichts mehr im Zielordner.");
    EXPECT_EQ(latest(2), summedUp(true));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, ClaimsNothingWhenTheReturnedCameraIsGoneAtOnce) {
    const auto camera = lost();
    const auto back = returned(*camera);
    back->sessionOpened();
    back->catalogReady();
    store->files["/bilder/A.JPG"] = "aaaa";
    while (model->awaitsCamera()) ASSERT_TRUE(loop.stepBackground() || loop.stepMain());
    lose(back);
    EXPECT_EQ(report.lines.back(), std::string("error: ") + ImportModel::searchingStatus);
    expectSummaryAndError();
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, EndsWhenTheReturnedCameraCannotBeOpened) {
    const auto camera = lost();
    const auto back = returned(*camera);
    loop.settle();
    EXPECT_EQ(report.lines.back(), "status: Verbinde mit Kamera A' …");
    EXPECT_TRUE(ends.empty());
    back->sessionOpened(Error{"Zugriff verweigert"});
    loop.settle();
    EXPECT_TRUE(
        report.lines.back().starts_with("error: Verbindung fehlgeschlagen: Zugriff verweigert."))
        << report.lines.back();
    expectSummaryAndError();
    expectEnd(ExitStatus::noCamera);
}

TEST_F(ImportCommandTest, EndsWhenTheReturnedCameraIsEmpty) {
    for (const auto& since :
         {std::optional<Date>(), std::optional(startOfLocalDay("2024-05-09"))}) {
        again();
        options.since = since;
        const auto camera = lost(since);
        const auto back = returned(*camera);
        back->catalogue.clear();
        deliver(*back);
        EXPECT_EQ(report.lines.back(), "error: Die Kamera meldet keine Dateien.");
        expectSummaryAndError();
        expectEnd(ExitStatus::filesFailed);
    }
}

TEST_F(ImportCommandTest, WaitsOnWhenAnotherCameraCannotBeOpened) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->holdsBack = true;
    run(*camera);
    model->cameraBrowserDidRemove(camera);
    attach("B")->sessionOpened(Error{"Zugriff verweigert"});
    loop.settle();
    EXPECT_EQ(model->phase(), ImportModel::Phase::noCamera);
    EXPECT_TRUE(ends.empty());
}

TEST_F(ImportCommandTest, KeepsTheDayAskedForWhenTheCameraReturnsWithMoreDays) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa", options.since);
    first->holdsBack = true;
    run(*camera);
    lose(camera);
    first->holdsBack = false;
    const auto back = returned(*camera);
    file(*back, "B.JPG", "bb", *options.since + std::chrono::days(1));
    deliver(*back);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, LoadsAllSinceTheDayThoughTheCameraReturnsWithoutIt) {
    for (const bool lastIsLoaded : {false, true}) {
        SCOPED_TRACE(lastIsLoaded);
        again();
        options.since = startOfLocalDay("2024-05-01");
        const auto camera = attach("A");
        file(*camera, "A.JPG", "aaaa", options.since);
        const auto second = file(*camera, "B.JPG", "bb", *options.since + std::chrono::days(1));
        second->holdsBack = true;
        file(*camera, "C.JPG", "c", *options.since + std::chrono::days(2));
        run(*camera);
        lose(camera);
        second->holdsBack = false;
        if (lastIsLoaded) store->files["/bilder/C.JPG"] = "c";
        const auto back = returned(*camera);
        back->catalogue.erase(back->catalogue.begin());
        deliver(*back);
        EXPECT_EQ(store->tree(Url::file("/bilder")),
                  (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}, {"C.JPG", "c"}}));
        expectEnd(ExitStatus::success);
    }
}

TEST_F(ImportCommandTest, LoadsNothingShotBeforeTheDayWhenTheCameraReturnsWithNothingLater) {
    for (const bool unreadable : {false, true}) {
        SCOPED_TRACE(unreadable);
        again();
        options.since = startOfLocalDay("2024-05-09");
        const auto camera = attach("A");
        file(*camera, "OLD.JPG", "o", *options.since - std::chrono::days(1));
        file(*camera, "A.JPG", "aaaa", options.since)->holdsBack = true;
        if (unreadable) addUnreadableFolder(*camera, *options.since + std::chrono::days(1));
        run(*camera);
        lose(camera);
        reported();
        const auto back = returned(*camera);
        back->catalogue.erase(back->catalogue.begin() + 1);
        deliver(*back);
        EXPECT_EQ(store->tree(Url::file("/bilder")), Tree());
        const Lines lines = reported();
        EXPECT_EQ(std::ranges::count(lines, vanishedLine(1)), 1);
        EXPECT_EQ(std::ranges::count(lines, unreadableFolder), unreadable ? 1 : 0);
        EXPECT_EQ(lines.back(),
                  unreadable ? "finished: 0/2 done, 1 failed" : "finished: 0/1 done, 0 failed");
        expectEnd(ExitStatus::filesFailed);
    }
}

TEST_F(ImportCommandTest, DoesNotForgetAFileThatFailedAndIsGoneWhenTheCameraReturns) {
    const struct {
        bool firstFails, isGone;
        ExitStatus end;
    } cases[] = {
        {true, true, ExitStatus::filesFailed},
        {true, false, ExitStatus::success},  // loaded now
        {false, true, ExitStatus::success},  // loaded before
    };
    for (const auto& [firstFails, isGone, end] : cases) {
        SCOPED_TRACE(std::to_string(firstFails) + std::to_string(isGone));
        again();
        const auto camera = attach("A");
        const auto first = file(*camera, "A.JPG", "aaaa");
        if (firstFails) first->error = Error{"Lesefehler"};
        const auto second = file(*camera, "B.JPG", "bb");
        second->holdsBack = true;
        run(*camera);
        lose(camera);
        first->error.reset();
        second->holdsBack = false;
        const auto back = returned(*camera);
        if (isGone) back->catalogue.erase(back->catalogue.begin());
        reported();
        deliver(*back);
        EXPECT_EQ(std::ranges::count(reported(), vanishedLine(1)), firstFails && isGone ? 1 : 0);
        EXPECT_EQ(store->files["/bilder/B.JPG"], "bb");
        expectEnd(end);
    }
}

TEST_F(ImportCommandTest, GoesOnAfterTheReturnOnceTheOtherImportHasEnded) {
    const auto camera = lost();
    lock->takenByAnother = true;
    deliver(*returned(*camera));
    EXPECT_TRUE(report.lines.back().ends_with("Fortsetzung wartet: Es läuft schon ein Import."));
    EXPECT_TRUE(ends.empty());
    lock->takenByAnother = false;
    loop.advance(Duration(5));
    EXPECT_EQ(report.lines.back(), "importing: 1/1 files, 4 bytes, 1 JPG");
    EXPECT_TRUE(ends.empty());
}

/// An import whose camera returns when the destination can take nothing.
class AwaitedDestinationTest : public ImportCommandTest {
protected:
    /// `spoil` happens to the destination while the camera is away. The import waits for `reason`
    /// until `recover`; or, without that, until it is interrupted.
    void expectToWait(const std::function<void()>& spoil, const std::string& reason,
                      const std::function<void()>& recover) {
        const auto camera = attach("A");
        const auto only = file(*camera, "A.JPG", "aaaa");
        only->holdsBack = true;
        run(*camera);
        lose(camera);
        only->holdsBack = false;
        spoil();
        deliver(*returned(*camera));
        EXPECT_TRUE(report.lines.back().ends_with(" Fortsetzung wartet: " + reason))
            << report.lines.back();
        reported();
        loop.advance(Duration(600));
        EXPECT_EQ(reported(), Lines()) << "once is enough";
        EXPECT_TRUE(ends.empty());
        if (recover) {
            recover();
            loop.advance(Duration(60));
        } else {
            command->interrupt();
        }
        const bool recovers = static_cast<bool>(recover);
        EXPECT_EQ(latest(2), summedUp(recovers, !recovers));
        expectEnd(recovers ? ExitStatus::success : ExitStatus::interrupted);
    }
};

TEST_F(AwaitedDestinationTest, IsWaitedForWhileTheFolderIsGone) {
    for (const bool recovers : {true, false}) {
        again();
        decltype(store->folders) folders;
        expectToWait([&] { folders = std::exchange(store->folders, {}); },
                     "Zielordner fehlt oder ist nicht beschreibbar.",
                     recovers ? std::function([&] { store->folders = folders; }) : nullptr);
        EXPECT_EQ(store->fileExists(Url::file("/bilder/A.JPG")), recovers);
        store->removeItem(Url::file("/bilder/A.JPG"));
    }
}

TEST_F(AwaitedDestinationTest, IsWaitedForWhileTheServerCannotBeListed) {
    for (const bool recovers : {true, false}) {
        again();
        const auto server = haveServer();
        expectToWait([&] { server->breakOfListings = "Broken pipe"; },
                     ImportModel::unlistedWaitStatus,
                     recovers ? std::function([&] { server->breakOfListings.reset(); }) : nullptr);
        EXPECT_EQ(store->fileExists(Url::file("/fotos/A.JPG")), recovers);
        store->removeItem(Url::file("/fotos"));
    }
}

TEST_F(ImportCommandTest, SaysWhyTheImportCannotGoOnAfterTheReturn) {
    const auto camera = lost();
    store->capacity = 0;
    deliver(*returned(*camera));
    EXPECT_TRUE(report.lines.back().starts_with("error: Kann Zielordner nicht beschreiben: "));
    expectSummaryAndError();
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(ImportCommandTest, TellsOfFilesThatVanishedWhileTheCameraWasAway) {
    for (const bool allGone : {true, false}) {
        SCOPED_TRACE(allGone);
        again();
        const auto camera = attach("A");
        file(*camera, "A.JPG", "aaaa");
        const auto second = file(*camera, "B.JPG", "bb");
        second->holdsBack = true;
        file(*camera, "C.JPG", "c");
        file(*camera, "D.JPG", "dddddd");
        run(*camera);
        lose(camera);
        second->holdsBack = false;
        reported();
        const auto back = returned(*camera);
        back->catalogue.erase(back->catalogue.begin() + 1, back->catalogue.end() - !allGone);
        deliver(*back);
        const Lines lines = reported();
        EXPECT_EQ(std::ranges::count(lines, vanishedLine(allGone ? 3 : 2)), 1);
        EXPECT_EQ(lines.back(),
                  allGone ? "finished: 1/4 done, 0 failed" : "finished: 1/1 done, 0 failed");
        expectEnd(ExitStatus::filesFailed);
    }
}

TEST_F(ImportCommandTest, IsDoneWhenTheCameraIsLostAfterTheLastFile) {
    for (const bool recognisable : {true, false}) {
        SCOPED_TRACE(recognisable);
        again();
        const auto camera = attach("A");
        if (!recognisable) camera->deviceIdentity.reset();
        const auto only = file(*camera, "A.JPG", "aaaa");
        only->holdsBack = true;
        run(*camera);
        only->deliver();
        while (store->files.count("/bilder/A.JPG") == 0 || loop.mainTasks() == 0) {
            ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
        }
        loop.stepMain();
        ASSERT_EQ(model->log().back(), "✓ bilder/A.JPG  (" + formatBytes(4) + ")");
        lose(camera);
        EXPECT_EQ(latest(2), summedUp(true));
        EXPECT_FALSE(model->awaitsCamera());
        expectEnd(ExitStatus::success);
    }
}

TEST_F(ImportCommandTest, CountsEveryLoadedFileAtTheSecondInterrupt) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    file(*camera, "B.JPG", "bb")->holdsBack = true;
    run(*camera);
    first->deliver();
    while (model->log().empty()) ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    command->interrupt();
    command->interrupt();
    EXPECT_EQ(report.lines.back(), "finished: 1/2 done, 0 failed, cancelled");
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, EndsWhenTheModelDoesNotWaitForTheCamera) {
    const auto camera = attach("A");
    camera->deviceIdentity.reset();
    file(*camera, "A.JPG", "aaaa")->holdsBack = true;
    run(*camera);
    lose(camera);
    EXPECT_TRUE(report.lines.back().starts_with("error: Import gestoppt: ")) << report.lines.back();
    expectSummaryAndError();
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, BeginsNothingOnceInterrupted) {
    attach("A");
    command->interrupt();
    begin();
    EXPECT_EQ(reported(), Lines());
    expectEnd(ExitStatus::interrupted);
    EXPECT_TRUE(model->isSettled());
}

TEST_F(ImportCommandTest, StopsAtOnceWhileNothingIsBeingLoaded) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    begin();
    command->interrupt();
    expectEnd(ExitStatus::interrupted);
    deliver(*camera);
    command->interrupt();
    expectEnd(ExitStatus::interrupted);
    EXPECT_EQ(reported(), Lines());
    EXPECT_EQ(store->files.count("/bilder/A.JPG"), 0);
}

TEST_F(ImportCommandTest, StopsAtOnceWhileItWaitsForTheCamera) {
    const auto camera = lost();
    command->interrupt();
    EXPECT_EQ(latest(2), summedUp(false, true));
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, SumsUpOnceWhatIsOverWhenItIsInterrupted) {
    const auto camera = attach("A");
    const auto only = file(*camera, "A.JPG", "aaaa");
    only->holdsBack = true;
    run(*camera);
    only->deliver();
    while (model->phase() == ImportModel::Phase::importing)
        ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    command->interrupt();
    const auto isSummary = [](const std::string& line) { return line.starts_with("Fertig: "); };
    EXPECT_EQ(std::ranges::count_if(report.lines, isSummary), 1);
    EXPECT_EQ(report.lines.back(), "finished: 1/1 done, 0 failed, cancelled");
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, StaysInterruptedThoughFilesHaveVanished) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->holdsBack = true;
    file(*camera, "B.JPG", "bb");
    run(*camera);
    lose(camera);
    const auto back = returned(*camera);
    back->catalogue.pop_back();
    back->sessionOpened();
    back->catalogReady();
    while (model->phase() != ImportModel::Phase::importing)
        ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    command->interrupt();
    loop.settle();
    EXPECT_EQ(std::ranges::count(report.lines, vanishedLine(1)), 1);
    EXPECT_EQ(latest(2), summedUp(false, true));
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, FinishesTheFileInFlightAtTheFirstInterrupt) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    file(*camera, "B.JPG", "bb");
    run(*camera);
    command->interrupt();
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(report.lines.back(), "status: Breche nach der aktuellen Datei ab …");
    first->deliver();
    loop.settle();
    EXPECT_EQ(report.lines.back(), "finished: 1/2 done, 0 failed, cancelled");
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}}));
    expectEnd(ExitStatus::interrupted);
}

TEST_F(ImportCommandTest, StopsAtOnceAtTheSecondInterrupt) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    run(*camera);
    command->interrupt();
    command->interrupt();
    EXPECT_FALSE(model->isSettled());
    const Lines lines = reported();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "Fertig: 0 geladen (0 KB), abgebrochen");
    EXPECT_EQ(lines.back(), "finished: 0/1 done, 0 failed, cancelled");
    expectEnd(ExitStatus::interrupted);
    command.reset();
    model.reset();
    first->deliver();
    loop.settle();
    EXPECT_EQ(store->files.count("/bilder/A.JPG"), 0);
}

TEST_F(ImportCommandTest, ReportsTheSpeedAsItChanges) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", std::string(4'000'000, 'x'));
    first->holdsBack = true;
    run(*camera);
    loop.advance(Duration(2));
    first->deliver();
    loop.settle();
    const Lines lines = reported();
    EXPECT_GE(report.speedReports, 1);
    EXPECT_EQ(lines[lines.size() - 2],
              "Fertig: 1 geladen (" + formatBytes(4'000'000) + "), Ø " + formatSpeed(2'000'000));
}

TEST_F(ImportCommandTest, ProvesWhatItHasLoaded) {
    options.verify = true;
    const auto camera = attach("A");
    store->folders.insert("/bilder");
    store->files["/bilder/A.JPG"] = "andere";
    file(*camera, "A.JPG", "aaaa");
    file(*camera, "B.JPG", "bb");
    store->files["/bilder/B.JPG"] = "BB";
    run(*camera);
    const Lines lines = reported();
    EXPECT_EQ(
        lines.back(),
        "✓ Die eine geladene Datei (4 Byte) ist am Ziel, Byte für Byte gleich. Die ganze Karte "
        "prüft verify --content.");
    EXPECT_FALSE(lock->held);
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, ProvesNothingWhereNothingWasLoaded) {
    options.verify = true;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    store->files["/bilder/A.JPG"] = "aaAA";
    run(*camera);
    EXPECT_EQ(reported().back(), "finished: 0/0 done, 0 failed");
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, FailsWhereWhatItHasLoadedIsNotProved) {
    options.verify = true;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    const auto again = file(*camera, "A.JPG", "aaAA");
    run(*camera);
    EXPECT_EQ(again->downloads, 1);
    const Lines lines = reported();
    EXPECT_EQ(lines[lines.size() - 2],
              "✗ A.JPG  (4 Byte): Zwilling: Was am Ziel so heißt und so groß ist, hat anderen "
              "Inhalt");
    EXPECT_EQ(lines.back(),
              "✗ Nicht löschen: am Ziel 1 von 2 Dateien (8 Byte), 1 mit anderem Inhalt.");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, ProvesWhatItHasLoadedWhenNothingIsMissingAfterTheReturn) {
    options.verify = true;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    const auto second = file(*camera, "B.JPG", "bb");
    second->holdsBack = true;
    run(*camera);
    lose(camera);
    store->files["/bilder/B.JPG"] = "bb";
    second->holdsBack = false;
    reported();
    deliver(*returned(*camera));
    EXPECT_EQ(
        reported().back(),
        "✓ Alle 2 geladenen Dateien (6 Byte) sind am Ziel, Byte für Byte gleich. Die ganze Karte "
        "prüft verify --content.");
    expectEnd(ExitStatus::success);
}

TEST_F(ImportCommandTest, KeepsTheLockForAProofWhoseCameraIsLostBeforeTheNext) {
    options.verify = true;
    options.cards = {"/a", "/b"};
    const auto first = attach("A");
    const auto second = attach("B");
    const auto held = file(*first, "A.JPG", "aaaa");
    held->holdsBack = true;
    file(*second, "B.JPG", "bb");
    begin();
    deliver(*first);
    held->deliver();
    loop.settle();
    EXPECT_EQ(held->downloads, 2);
    lose(first);
    EXPECT_TRUE(lock->held);
    EXPECT_TRUE(ends.empty());
    // What it reads from now on may be another card's.
    held->deliver();
    loop.settle();
    deliver(*second);
    const Lines lines = reported();
    EXPECT_EQ(std::ranges::count(lines, "✗ Nicht geprüft: Die Kamera wurde getrennt."), 1);
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](const auto& line) { return line.starts_with("✓ Die eine geladene"); }),
              1);
    EXPECT_FALSE(lock->held);
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(ImportCommandTest, StopsAProofWhoseCameraIsLost) {
    options.verify = true;
    const auto camera = attach("A");
    const auto held = file(*camera, "A.JPG", "aaaa");
    held->holdsBack = true;
    run(*camera);
    held->deliver();
    loop.settle();
    EXPECT_EQ(held->downloads, 2);  // loaded, and read once more
    EXPECT_TRUE(ends.empty());
    lose(camera);
    EXPECT_EQ(reported().back(), "error: Die Kamera wurde getrennt.");
    expectEnd(ExitStatus::filesFailed);
}

}  // namespace
}  // namespace bildkurier
