// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeCamera.h"
#include "FakeCameraFile.h"
#include "FakeFolderAccess.h"
#include "FakeRunLock.h"
#include "ImportModel.h"
#include "ManualRunLoop.h"
#include "MemoryContentReader.h"
#include "ProofSummary.h"
#include "RecordingReport.h"
#include "VerifyCommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Lines = std::vector<std::string>;

/// The command amid fakes.
class VerifyCommandTest : public testing::Test {
protected:
    void make() {
        command = std::make_shared<VerifyCommand>(
            options, Url::file("/bilder"), proof, access, store, loop, report,
            [this](ExitStatus ended) { ends.push_back(ended); });
    }

    std::shared_ptr<FakeCamera> attach(const std::string& id) {
        if (!command) make();
        const auto camera = std::make_shared<FakeCamera>(id);
        camera->deviceName = "Kamera " + id;
        command->cameraBrowserDidAdd(camera);
        return camera;
    }

    std::shared_ptr<FakeCameraFile> file(FakeCamera& on, const std::string& name,
                                         const std::string& contents) {
        const auto made = std::make_shared<FakeCameraFile>(store, name, contents);
        on.catalogue.push_back(made);
        return made;
    }

    void deliver(FakeCamera& from) {
        from.sessionOpened();
        from.catalogReady();
        loop.settle();
    }

    void expectEnd(ExitStatus status) { EXPECT_EQ(ends, std::vector{status}); }

    ManualRunLoop loop;
    std::shared_ptr<MemoryFileStore> store = std::make_shared<MemoryFileStore>();
    std::shared_ptr<MemoryContentReader> reader = std::make_shared<MemoryContentReader>(store);
    std::shared_ptr<CardProof> proof = std::make_shared<CardProof>(
        CardProof::Collaborators{.reader = reader,
                                 .fileStore = store,
                                 .keyring = nullptr,
                                 .runLock = std::make_shared<FakeRunLock>(),
                                 .staging = Url::file("/cache")},
        loop, loop);
    std::shared_ptr<FakeFolderAccess> access = std::make_shared<FakeFolderAccess>();
    CommandLine options{.command = CommandLine::Command::verify, .content = true};
    RecordingReport report;
    std::vector<ExitStatus> ends;
    std::shared_ptr<VerifyCommand> command;
};

TEST_F(VerifyCommandTest, ProvesTheGivenCardsOneAfterTheOther) {
    options.cards = {"/a", "/b"};
    const auto first = attach("A");
    const auto second = attach("B");
    file(*first, "A.JPG", "aaaa");
    file(*second, "B.JPG", "bb");
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    deliver(*first);
    EXPECT_EQ(first->closed, 1);
    deliver(*second);
    EXPECT_EQ(report.lines,
              (Lines{"camera: A", "comparing: 1 files, 4 bytes",
                     "✓ Die eine Datei (4 Byte) ist am Ziel, Byte für Byte gleich.", "camera: B",
                     "comparing: 1 files, 2 bytes", "✗ B.JPG  (2 Byte): fehlt am Ziel",
                     "✗ Nicht löschen: am Ziel 0 von 1 Datei (2 Byte), 1 fehlt."}));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, TellsWhatElseIsOnEachCard) {
    options.cards = {"/a", "/b", "/c"};
    const std::vector cameras{attach("A"), attach("B"), attach("C")};
    cameras[0]->others.kinds = {{"CR4", 1}};
    cameras[2]->others.hidden = {{".alt", 1}};
    for (const auto& camera : {cameras[0], cameras[1]}) file(*camera, "A.JPG", "aaaa");
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    for (const auto& camera : cameras) deliver(*camera);
    const auto there = "✓ Die eine Datei (4 Byte) ist am Ziel, Byte für Byte gleich.";
    const auto comparing = "comparing: 1 files, 4 bytes";
    EXPECT_EQ(report.lines,
              (Lines{"camera: A", comparing, "ℹ︎ Nicht geprüft: 1 Datei anderer Art (CR4).", there,
                     "camera: B", comparing, there, "camera: C", "comparing: 0 files, 0 bytes",
                     "ℹ︎ Nicht geprüft: Verstecktes (.alt).", proofSummary({})}));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, ProvesNothingOfAnEmptyCard) {
    const auto camera = attach("A");
    command->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines.back(),
              "✗ Nicht löschen: Auf der Karte ist keine Datei, die zu prüfen wäre.");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, SaysThatAChosenDestinationIsGone) {
    access->restorable = Url::file("/bilder");
    file(*attach("A"), "A.JPG", "aaaa");
    command->begin();
    EXPECT_EQ(report.lines, (Lines{"error: Der Zielordner /bilder ist nicht mehr da. Ist die "
                                   "Platte angesteckt?"}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(VerifyCommandTest, GivesUpOnADestinationThatIsAFile) {
    store->files["/bilder"] = "a file";
    file(*attach("A"), "A.JPG", "aaaa");
    command->begin();
    EXPECT_EQ(report.lines, (Lines{"error: Der Zielordner ist kein Ordner."}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(VerifyCommandTest, SaysWhenThereIsNoCameraToOpen) {
    make();
    command->begin();
    EXPECT_EQ(report.lines, (Lines{"error: Keine Kamera gefunden."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(VerifyCommandTest, SaysWhyACameraCannotBeOpened) {
    const auto camera = attach("A");
    command->begin();
    camera->sessionOpened(Error{"belegt"});
    EXPECT_EQ(report.lines, (Lines{"error: Verbindung fehlgeschlagen: belegt"}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(VerifyCommandTest, EndsWhenTheCameraIsLost) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->holdsBack = true;
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    deliver(*camera);
    command->cameraBrowserDidRemove(camera);
    EXPECT_EQ(report.lines.back(), "error: Die Kamera wurde getrennt.");
    EXPECT_FALSE(proof->isRunning());
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, EndsWhenTheCameraIsLostBeforeItIsRead) {
    const auto camera = attach("A");
    command->begin();
    command->cameraBrowserDidRemove(camera);
    EXPECT_EQ(report.lines, Lines{"error: Die Kamera wurde getrennt."});
    expectEnd(ExitStatus::noCamera);
}

TEST_F(VerifyCommandTest, PassesOverCardsThatCannotBeRead) {
    options.cards = {"/a", "/b", "/c", "/d"};
    const std::vector cameras{attach("A"), attach("B"), attach("C"), attach("D")};
    file(*cameras[3], "D.JPG", "dd");
    command->begin();
    cameras[0]->sessionOpened(Error{"belegt"});
    command->cameraBrowserDidRemove(cameras[0]);
    command->cameraBrowserDidRemove(cameras[1]);
    loop.settle();
    EXPECT_EQ(cameras[1]->opened, 0);
    cameras[2]->sessionOpened();
    command->cameraBrowserDidRemove(cameras[2]);
    loop.settle();
    EXPECT_TRUE(ends.empty());
    deliver(*cameras[3]);
    EXPECT_EQ(std::ranges::count(report.lines, "error: Verbindung fehlgeschlagen: belegt"), 1);
    EXPECT_EQ(std::ranges::count(report.lines, "error: Die Kamera wurde getrennt."), 2);
    EXPECT_EQ(report.lines.back(), proofSummary({.files = 1, .bytes = 2, .missing = 1}));
    // A card that could not be opened is worse than one that lacks files.
    expectEnd(ExitStatus::noCamera);
}

/// Of two cards the first.
class SpoiledProofTest : public VerifyCommandTest {
protected:
    /// Proves both. Meanwhile `spoil` happens to the first, though all of it can still be read, and
    /// is equal: it may be another's by then.
    void prove(const std::function<void()>& spoil) {
        options.cards = {"/a", "/b"};
        first = attach("A");
        const auto second = attach("B");
        const auto held = file(*first, "A.JPG", "aaaa");
        held->holdsBack = true;
        file(*second, "B.JPG", "bb");
        store->files["/bilder/A.JPG"] = "aaaa";
        store->files["/bilder/B.JPG"] = "bb";
        command->begin();
        deliver(*first);
        spoil();
        EXPECT_TRUE(proof->isRunning());
        held->deliver();
        loop.settle();
        deliver(*second);
    }

    void expectOnlyTheSecond(const std::string& complaint) {
        EXPECT_EQ(report.lines,
                  (Lines{"camera: A", "comparing: 1 files, 4 bytes", "error: " + complaint,
                         "camera: B", "comparing: 1 files, 2 bytes",
                         "✓ Die eine Datei (2 Byte) ist am Ziel, Byte für Byte gleich."}));
        expectEnd(ExitStatus::filesFailed);
    }

    std::shared_ptr<FakeCamera> first;
};

TEST_F(SpoiledProofTest, CountsForNothingOfACardThatIsLost) {
    prove([this] { command->cameraBrowserDidRemove(first); });
    expectOnlyTheSecond("Die Kamera wurde getrennt.");
}

TEST_F(SpoiledProofTest, CountsForNothingOfACardThatChanges) {
    prove([this] {
        command->cameraCatalogChanged(*first);
        command->cameraBrowserDidRemove(first);
        // Nothing may begin while the proof runs.
        command->cameraDidOpenSession(*first, Error{"belegt"});
    });
    expectOnlyTheSecond(
        "Auf der Karte hat sich während der Prüfung etwas geändert; bitte noch einmal prüfen.");
}

TEST_F(VerifyCommandTest, ProvesTheNextWhereOneCardOverlapsTheDestination) {
    options.cards = {"/a", "/b"};
    const auto first = attach("A");
    const auto second = attach("B");
    first->folder = Url::file("/bilder");
    file(*first, "A.JPG", "aaaa");
    file(*second, "B.JPG", "bb");
    store->files["/bilder/B.JPG"] = "bb";
    command->begin();
    deliver(*first);
    deliver(*second);
    EXPECT_EQ(report.lines.back(), "✓ Die eine Datei (2 Byte) ist am Ziel, Byte für Byte gleich.");
    EXPECT_EQ(std::ranges::count(report.lines, std::string("error: ") + ImportModel::overlapStatus),
              1);
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(VerifyCommandTest, DoesNotMindThatACardGoesOnceItIsProved) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    camera->sessionOpened();
    camera->catalogReady();
    while (proof->isRunning()) ASSERT_TRUE(loop.stepBackground() || loop.stepMain());
    command->cameraBrowserDidRemove(camera);
    loop.settle();
    expectEnd(ExitStatus::success);
}

TEST_F(VerifyCommandTest, ProvesNoCardThatChangesMeanwhile) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->holdsBack = true;
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    deliver(*camera);
    camera->catalogChanged();
    EXPECT_TRUE(report.lines.back().starts_with("error: Auf der Karte hat sich"));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, DoesNotMindThatACardIsReadAgainOnceItIsProved) {
    options.cards = {"/a", "/b"};
    const auto camera = attach("A");
    const auto second = attach("B");
    file(*camera, "A.JPG", "aaaa");
    file(*second, "B.JPG", "bb");
    store->files["/bilder/A.JPG"] = "aaaa";
    store->files["/bilder/B.JPG"] = "bb";
    command->begin();
    camera->sessionOpened();
    camera->catalogReady();
    while (proof->isRunning()) ASSERT_TRUE(loop.stepBackground() || loop.stepMain());
    camera->catalogReady();
    loop.settle();
    deliver(*second);
    EXPECT_EQ(report.lines.back(), "✓ Die eine Datei (2 Byte) ist am Ziel, Byte für Byte gleich.");
    expectEnd(ExitStatus::success);
}

TEST_F(VerifyCommandTest, ProvesNoCardThatIsAnotherInTheEnd) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aa");
    store->files["/bilder/A.JPG"] = "aa";
    command->begin();
    camera->holdsSameFiles = false;
    deliver(*camera);
    EXPECT_EQ(report.lines,
              (Lines{"comparing: 1 files, 2 bytes",
                     "✗ Nicht löschen: Auf der Karte hat sich während der Prüfung etwas geändert; "
                     "bitte noch einmal prüfen."}));
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, TellsOfFoldersOfTheDestinationThatCannotBeRead) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    reader->unreadableFolders = {"geheim\n"};
    command->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines.front(),
              "ℹ︎ Am Ziel ist der Ordner geheim␊ nicht lesbar: Was darin liegt, gilt als fehlend.");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, TellsWhyTheDestinationMayBeLessSafeThanItSeems) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    reader->onCautions = [](const Url&, const std::optional<Url>&) { return Lines{"Vorsicht."}; };
    command->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines.front(), "ℹ︎ Vorsicht.");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(VerifyCommandTest, StopsAtOnceWhenInterrupted) {
    const auto camera = attach("A");
    const auto held = file(*camera, "A.JPG", "aaaa");
    held->holdsBack = true;
    store->files["/bilder/A.JPG"] = "aaaa";
    command->begin();
    deliver(*camera);
    command->interrupt();
    expectEnd(ExitStatus::interrupted);
    held->deliver();
    loop.settle();
    EXPECT_EQ(report.lines, (Lines{"comparing: 1 files, 4 bytes"}));
    expectEnd(ExitStatus::interrupted);
}

}  // namespace
}  // namespace bildkurier
