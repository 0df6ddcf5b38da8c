// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardImport.h"
#include "FailingFileStore.h"
#include "FakeCamera.h"
#include "FakeCameraFile.h"
#include "Formatting.h"
#include "LocalDay.h"
#include "ManualRunLoop.h"
#include "MemoryFileStore.h"
#include "RecordingReport.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

using Command = CommandLine::Command;
using Lines = std::vector<std::string>;

class CardImportTest : public testing::Test {
protected:
    CardImportTest() { options.destination = "/bilder"; }

    void make() {
        job = std::make_shared<CardImport>(options, files, loop, loop, report,
                                           [this](ExitStatus ended) { statuses.push_back(ended); });
    }

    std::shared_ptr<FakeCamera> attach(const std::string& id) {
        if (!job) make();
        auto camera = cameras.emplace_back(std::make_shared<FakeCamera>(id));
        camera->deviceName = "Karte " + id;
        camera->deviceIdentity = "serial:" + id;
        job->cameraBrowserDidAdd(camera);
        return camera;
    }

    std::shared_ptr<FakeCameraFile> file(FakeCamera& camera, const std::string& name,
                                         const std::string& contents) {
        auto made = std::make_shared<FakeCameraFile>(store, name, contents);
        camera.catalogue.push_back(made);
        return made;
    }

    /// Opens the session of the camera and delivers its catalogue.
    void deliver(FakeCamera& camera) {
        ASSERT_EQ(camera.opened, 1);
        camera.sessionOpened();
        camera.catalogReady();
        loop.settle();
    }

    void expectEnd(ExitStatus status) {
        ASSERT_EQ(statuses, std::vector{status});
        EXPECT_EQ(loop.timers(), 0);
        for (const auto& camera : cameras) EXPECT_EQ(camera->opened, camera->closed);
    }

    CommandLine options{.command = Command::import, .layout = {}};
    ManualRunLoop loop;
    RecordingReport report;
    std::shared_ptr<MemoryFileStore> store = std::make_shared<MemoryFileStore>();
    std::shared_ptr<FileStore> files = store;
    std::vector<std::shared_ptr<FakeCamera>> cameras;
    std::shared_ptr<CardImport> job;
    std::vector<ExitStatus> statuses;
};

TEST_F(CardImportTest, ListsCameras) {
    options.command = Command::cameras;
    attach("A");
    attach("B");
    job->begin();
    EXPECT_EQ(report.lines, (Lines{"camera: A", "camera: B"}));
    expectEnd(ExitStatus::success);
}

TEST_F(CardImportTest, SaysWhenThereIsNoCamera) {
    for (const Command command : {Command::cameras, Command::plan, Command::import}) {
        options.command = command;
        report.lines.clear();
        statuses.clear();
        make();
        job->begin();
        EXPECT_EQ(report.lines, (Lines{"error: Keine Kamera gefunden."}));
        expectEnd(ExitStatus::noCamera);
    }
}

TEST_F(CardImportTest, FindsACameraByNameOrIdentity) {
    for (const std::string wish : {"Karte B", "serial:B"}) {
        options.camera = wish;
        make();
        cameras.clear();
        attach("A");
        const auto wanted = attach("B");
        job->begin();
        EXPECT_EQ(cameras[0]->opened, 0);
        EXPECT_EQ(wanted->opened, 1);
    }
    options.camera = "serial:C";
    job.reset();
    attach("A");
    job->begin();
    EXPECT_EQ(report.lines.back(), "error: Kamera „serial:C“ nicht gefunden.");
    EXPECT_EQ(statuses.back(), ExitStatus::noCamera);
}

TEST_F(CardImportTest, WantsToKnowWhichOfSeveralCameras) {
    attach("A");
    attach("B");
    job->begin();
    EXPECT_EQ(report.lines,
              (Lines{"error: Mehrere Kameras gefunden; bitte mit --camera eine wählen."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(CardImportTest, ImportsTheGivenCardsOneAfterTheOther) {
    options.cards = {"/a", "/b"};
    const auto first = attach("A");
    const auto second = attach("B");
    file(*first, "A.JPG", "aaaa");
    file(*second, "a.jpg", "aaaa");
    file(*second, "B.JPG", "bb");
    job->begin();
    deliver(*first);
    deliver(*second);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    EXPECT_EQ(
        report.lines,
        (Lines{"importing: 1/1 files, 4 bytes, 1 JPG", "✓ bilder/A.JPG  (" + formatBytes(4) + ")",
               "Fertig: 1 geladen (" + formatBytes(4) + ")", "importing: 1/2 files, 2 bytes, 1 JPG",
               "✓ bilder/B.JPG  (" + formatBytes(2) + ")",
               "Fertig: 1 geladen (" + formatBytes(2) + ")"}));
    expectEnd(ExitStatus::success);
}

TEST_F(CardImportTest, DoesNotPassOverACardThatIsNotThere) {
    options.cards = {"/a", "/b"};
    attach("A");
    job->begin();
    EXPECT_EQ(report.lines, (Lines{"error: Nicht jede angegebene Karte ist ein lesbarer Ordner."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(CardImportTest, PlansWithoutTouchingTheDestination) {
    options.command = Command::plan;
    options.layout = {.byDate = false, .byType = true};
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder/CR3")));
    store->files["/bilder/CR3/old.cr3"] = "ooo";
    const auto camera = attach("A");
    file(*camera, "OLD.CR3", "ooo");
    file(*camera, "A.JPG", "aaaa");
    file(*camera, "B.CR3", "bb");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines, (Lines{"plan: 2/3 files, 6 bytes, 1 CR3, 1 JPG"}));
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"CR3/", ""}, {"CR3/old.cr3", "ooo"}}));
    expectEnd(ExitStatus::success);
}

TEST_F(CardImportTest, LeavesOutWhatWasShotBeforeTheDay) {
    options.since = startOfLocalDay("2024-05-09");
    const auto camera = attach("A");
    file(*camera, "OLD.JPG", "a")->shot = *options.since - std::chrono::milliseconds(1);
    file(*camera, "NEW.JPG", "b")->shot = *options.since;
    file(*camera, "UNDATED.JPG", "c");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"NEW.JPG", "b"}}));
}

TEST_F(CardImportTest, SucceedsWhenThereIsNothingToDo) {
    const auto camera = attach("A");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines, (Lines{"importing: 0/0 files, 0 bytes", "Fertig: 0 geladen (0 KB)"}));
    EXPECT_EQ(store->folders.count("/bilder"), 0);
    expectEnd(ExitStatus::success);
}

TEST_F(CardImportTest, TellsOfFilesThatFailed) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa")->error = Error{"Lesefehler"};
    file(*camera, "B.JPG", "bb");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines.back(), "Fertig: 1 geladen (" + formatBytes(6) + "), 1 fehlgeschlagen");
    expectEnd(ExitStatus::filesFailed);
}

TEST_F(CardImportTest, GivesUpOnADestinationThatIsAFile) {
    store->files["/bilder"] = "a file";
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines, (Lines{"error: Zielordner ist nicht beschreibbar."}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(CardImportTest, PlansForADestinationThatMayOnlyBeRead) {
    options.command = Command::plan;
    const auto failing = std::make_shared<FailingFileStore>(store);
    failing->failAt = 0;
    failing->forGood = true;
    files = failing;
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder")));
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines, (Lines{"plan: 1/1 files, 4 bytes, 1 JPG"}));
    expectEnd(ExitStatus::success);
}

TEST_F(CardImportTest, DoesNotPlanForAFile) {
    options.command = Command::plan;
    store->files["/bilder"] = "a file";
    const auto camera = attach("A");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines, (Lines{"error: Der Zielordner ist kein Ordner."}));
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(CardImportTest, BeginsNothingOnceInterrupted) {
    const auto camera = attach("A");
    job->interrupt();
    job->begin();
    EXPECT_EQ(camera->opened, 0);
    EXPECT_EQ(report.lines, Lines());
    expectEnd(ExitStatus::interrupted);
    EXPECT_FALSE(job->abandonedImport());
}

TEST_F(CardImportTest, FindsACameraWithoutANameByTheOneItIsShownWith) {
    options.camera = "Kamera";
    const auto camera = attach("A");
    camera->deviceName.reset();
    job->begin();
    EXPECT_EQ(camera->opened, 1);
}

TEST_F(CardImportTest, GivesUpWhenTheRunCannotStart) {
    store->capacity = 1000;
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.lines.back(),
              "error: Kann Zielordner nicht beschreiben: Zu wenig Platz für die größte Datei (" +
                  formatBytes(4) + " nötig, " + formatBytes(1000) + " frei).");
    expectEnd(ExitStatus::destinationUnusable);
}

TEST_F(CardImportTest, ReportsASessionThatCannotBeOpened) {
    const auto camera = attach("A");
    job->begin();
    camera->sessionOpened(Error{"Zugriff verweigert"});
    EXPECT_EQ(report.lines, (Lines{"error: Verbindung fehlgeschlagen: Zugriff verweigert"}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(CardImportTest, EndsWhenTheCameraGoesBeforeTheImport) {
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    job->begin();
    camera->sessionOpened();
    camera->catalogReady();
    job->cameraBrowserDidRemove(camera);
    loop.settle();
    EXPECT_EQ(report.lines, (Lines{"error: Die Kamera wurde getrennt."}));
    expectEnd(ExitStatus::noCamera);
}

TEST_F(CardImportTest, StopsAtOnceWhileNothingIsBeingLoaded) {
    const auto camera = attach("A");
    job->begin();
    job->interrupt();
    expectEnd(ExitStatus::interrupted);
    camera->catalogReady();
    loop.settle();
    job->interrupt();
    expectEnd(ExitStatus::interrupted);
    EXPECT_EQ(report.lines, Lines());
}

TEST_F(CardImportTest, FinishesTheFileInFlightAtTheFirstInterrupt) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    file(*camera, "B.JPG", "bb");
    job->begin();
    deliver(*camera);
    job->interrupt();
    EXPECT_TRUE(statuses.empty());
    first->deliver();
    loop.settle();
    EXPECT_EQ(report.lines.back(), "Fertig: 1 geladen (" + formatBytes(4) + "), abgebrochen");
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}}));
    expectEnd(ExitStatus::interrupted);
}

TEST_F(CardImportTest, StopsAtOnceAtTheSecondInterrupt) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    job->begin();
    deliver(*camera);
    job->interrupt();
    EXPECT_FALSE(job->abandonedImport());
    job->interrupt();
    EXPECT_TRUE(job->abandonedImport());
    EXPECT_EQ(report.lines.back(), "Fertig: 0 geladen (0 KB), abgebrochen");
    expectEnd(ExitStatus::interrupted);
    first->deliver();
    loop.settle();
    EXPECT_EQ(store->files.count("/bilder/A.JPG"), 0);
}

TEST_F(CardImportTest, SamplesTheSpeedFourTimesASecond) {
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", std::string(4'000'000, 'x'));
    first->holdsBack = true;
    job->begin();
    deliver(*camera);
    EXPECT_EQ(report.speedReports, 1);
    loop.advance(Duration(2));
    EXPECT_EQ(report.speedReports, 9);
    first->deliver();
    loop.settle();
    EXPECT_EQ(report.lines.back(),
              "Fertig: 1 geladen (" + formatBytes(4'000'000) + "), Ø " + formatSpeed(2'000'000));
}

}  // namespace
}  // namespace bildkurier
