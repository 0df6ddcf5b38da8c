// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FailingFileStore.h"
#include "Formatting.h"
#include "ImportModelWithTwoCameras.h"
#include "SlowMoves.h"

#include <chrono>
#include <deque>
#include <limits>

namespace bildkurier {
namespace {

using namespace std::chrono;

using Log = std::deque<std::string>;

class ImportModelRunTest : public ImportModelWithTwoCameras {
protected:
    /// A file of `size` bytes whose download waits.
    std::shared_ptr<FakeCameraFile> heldFile(const std::string& name, std::size_t size = 4) {
        const auto held = file(*attached, name, std::string(size, 'a'));
        held->holdsBack = true;
        return held;
    }

    /// Begins the import of everything on the first camera.
    void start() {
        make();
        connect(attached);
        model->startImport();
        loop.settle();
        ASSERT_EQ(model->phase(), Phase::importing);
    }

    void deliver(FakeCameraFile& held) {
        held.deliver();
        loop.settle();
    }

    /// Reads the card, on which something has changed, again.
    void readAgain() {
        attached->catalogChanged();
        loop.advance(reloadDelay);
    }
};

TEST_F(ImportModelRunTest, ImportsWhatIsMissing) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import.");
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->log(), (Log{"✓ JPG/A.JPG  (" + formatBytes(4) + ")",
                                 "Fertig: 1 geladen (" + formatBytes(4) + ")"}));
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
    EXPECT_EQ(loop.timers(), 0);
}

// Start

TEST_F(ImportModelRunTest, StartsOnlyWhenSomethingNewIsReady) {
    make();
    model->addLog("x");
    file(*attached, "A.JPG", "aaaa");
    const auto expectNothing = [&](Phase phase) {
        ASSERT_EQ(model->phase(), phase);
        const std::string status = model->status();
        model->startImport();
        EXPECT_EQ(model->phase(), phase);
        EXPECT_EQ(model->status(), status);
        EXPECT_EQ(model->log(), Log{"x"});
        EXPECT_EQ(sleepBlocker->begun, 0);
        EXPECT_EQ(loop.timers(), 0);
    };
    expectNothing(Phase::noCamera);
    model->cameraBrowserDidAdd(attached);
    expectNothing(Phase::connecting);
    attached->sessionOpened();
    expectNothing(Phase::reading);
    attached->catalogReady();
    expectNothing(Phase::checking);
    loop.settle();
    attached->catalogue.clear();
    readAgain();
    expectNothing(Phase::ready);
}

TEST_F(ImportModelRunTest, DoesNotStartTwice) {
    const auto held = heldFile("A.JPG");
    start();
    model->addLog("x");
    model->startImport();
    EXPECT_EQ(model->log(), Log{"x"});
    loop.settle();
    EXPECT_EQ(held->downloads, 1);
    const Handle impatient = model->observe([&] {
        if (model->phase() == Phase::done) model->startImport();
    });
    deliver(*held);
    EXPECT_EQ(held->downloads, 1);
    EXPECT_EQ(sleepBlocker->begun, 1);
}

TEST_F(ImportModelRunTest, AsksForTheFolderInsteadOfStarting) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    model->addLog("x");
    access->granted = false;
    model->startImport();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), chooseFolder);
    EXPECT_EQ(model->log(), Log{"x"});
    EXPECT_EQ(sleepBlocker->begun, 0);
}

TEST_F(ImportModelRunTest, SaysWhyItCannotStart) {
    const struct {
        bool continuing;
        std::optional<std::int64_t> failAt;
        std::int64_t capacity;
        std::string reason;
        Log log;
    } cases[] = {
        {false, 1, 1'000'000'000'000, "Auf dem Volume ist kein Platz mehr frei", {}},
        {true, 1, 1'000'000'000'000, "Auf dem Volume ist kein Platz mehr frei", {"x"}},
        {false,
         std::nullopt,
         1000,
         "Zu wenig Platz für die größte Datei (" + formatBytes(4) + " nötig, " + formatBytes(1000) +
             " frei).",
         {}},
    };
    file(*attached, "A.JPG", "aaaa");
    for (const auto& [continuing, failAt, capacity, reason, log] : cases) {
        const auto failing = std::make_shared<FailingFileStore>(store);
        failing->failAt = failAt;
        store->capacity = capacity;
        files = failing;
        make();
        connect(attached);
        model->addLog("x");
        phases.clear();
        record();
        model->startImport(false, continuing);
        EXPECT_EQ(phases, (Phases{Phase::ready, Phase::importing, Phase::ready}));
        EXPECT_EQ(model->status(), "Kann Zielordner nicht beschreiben: " + reason);
        EXPECT_EQ(model->log(), log);
        EXPECT_EQ(newNames(), (Names{"A.JPG"}));
        EXPECT_EQ(model->progress(), ImportRunner::Progress());
        EXPECT_EQ(sleepBlocker->begun, 0);
        EXPECT_EQ(loop.timers(), 0);
        loop.settle();
        EXPECT_EQ(model->phase(), Phase::ready);
    }
}

TEST_F(ImportModelRunTest, BeginsWithAnEmptyLogUnlessItContinues) {
    for (const bool continuing : {false, true}) {
        store->files.clear();
        make();
        attached->catalogue.clear();
        file(*attached, "A.JPG", "aaaa");
        connect(attached);
        model->addLog("x");
        model->startImport(false, continuing);
        EXPECT_EQ(model->log(), continuing ? Log{"x"} : Log());
    }
}

TEST_F(ImportModelRunTest, SetsNoStatusBeforeTheFirstProgress) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    const std::string status = model->status();
    model->startImport();
    EXPECT_EQ(model->status(), status);
}

TEST_F(ImportModelRunTest, LoadsAllNewFilesInTheirOrderIntoTheChosenLayout) {
    settings->storedByDate = true;
    settings->storedByType = false;
    settings->storedUseFromDate = true;
    settings->storedFromDay = "2024-05-03";
    make();
    fillFiveDays();
    file(*attached, "0.JPG", "a", noon(2024y / May / 3));
    connect(attached);
    model->setByType(true);
    model->startImport();
    loop.settle();
    EXPECT_EQ(model->log(),
              (Log{"✓ JPG/3.JPG  (" + formatBytes(1) + ")", "✓ JPG/0.JPG  (" + formatBytes(1) + ")",
                   "✓ JPG/4.JPG  (" + formatBytes(1) + ")", "✓ JPG/5.JPG  (" + formatBytes(1) + ")",
                   "Fertig: 4 geladen (" + formatBytes(4) + ")"}));
    EXPECT_EQ(store->files.count("/bilder/2024-05-03/JPG/0.JPG"), 1);
    EXPECT_EQ(store->files.count("/bilder/2024-05-05/JPG/5.JPG"), 1);
}

TEST_F(ImportModelRunTest, KeepsItsPlanWhileTheFilterChanges) {
    const auto held = heldFile("A.JPG");
    held->shot = noon(2024y / May / 1);
    file(*attached, "B.JPG", "bb", noon(2024y / May / 2));
    start();
    model->setUseFromDate(true);
    model->setFromDayIndex(0);
    EXPECT_EQ(newNames(), (Names{"A.JPG", "B.JPG"}));
    EXPECT_EQ(model->newBytes(), 6);
    deliver(*held);
    EXPECT_EQ(store->files.count("/bilder/JPG/B.JPG"), 1);
}

// Awake

TEST_F(ImportModelRunTest, KeepsTheMachineAwakeWhileItRuns) {
    const auto held = heldFile("A.JPG");
    start();
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    loop.advance(10s);
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    deliver(*held);
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
    EXPECT_EQ(sleepBlocker->begun, 1);
}

// Speed

TEST_F(ImportModelRunTest, ReadsItsClockFourTimesASecond) {
    const auto held = heldFile("A.JPG");
    make();
    int readings = 0;
    model->clock = [&] { return ++readings; };
    connect(attached);
    EXPECT_EQ(readings, 0);
    model->startImport();
    EXPECT_EQ(readings, 1);
    loop.advance(249ms);
    EXPECT_EQ(readings, 1);
    loop.advance(1ms);
    EXPECT_EQ(readings, 2);
    loop.advance(1750ms);
    EXPECT_EQ(readings, 9);
    deliver(*held);
    EXPECT_EQ(readings, 10);
    loop.advance(10s);
    EXPECT_EQ(readings, 10);
}

TEST_F(ImportModelRunTest, MeasuresTheSpeedOverTwoSeconds) {
    const auto held = heldFile("A.JPG", 4000);
    start();
    EXPECT_EQ(model->speed(), SpeedMeter::Reading());
    held->grow(1000);  // seen after half a second
    loop.advance(1s);
    const double peak = model->speed().peak;
    EXPECT_GE(peak, 1000);
    EXPECT_EQ(model->speed(), (SpeedMeter::Reading{1000, 1000, peak}));
    loop.advance(1250ms);
    EXPECT_EQ(model->speed(), (SpeedMeter::Reading{500, 1000 / 2.25, peak}));
    loop.advance(1s);
    EXPECT_EQ(model->speed(), (SpeedMeter::Reading{0, 1000 / 3.25, peak}));
    deliver(*held);
    EXPECT_EQ(model->speed(), (SpeedMeter::Reading{1500, 4000 / 3.25, peak}));
}

TEST_F(ImportModelRunTest, LeavesOutSamplesOlderThanTwoSeconds) {
    const auto held = heldFile("A.JPG", 4000);
    make();
    double seconds = 0;
    model->clock = [&] { return seconds; };
    connect(attached);
    model->startImport();
    loop.settle();
    held->grow(1000);
    seconds = 2;
    loop.advance(500ms);
    EXPECT_EQ(model->speed().current, 500);
    seconds = 2.0625;
    loop.advance(250ms);
    EXPECT_EQ(model->speed().current, 16'000);
}

TEST_F(ImportModelRunTest, SeesNoBytesGoBackWhileAFileIsMovedIntoPlace) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    const auto held = heldFile("A.JPG", 4000);
    heldFile("B.JPG", 4000);
    start();
    held->grow(4000);
    loop.advance(1s);
    const double peak = model->speed().peak;
    slow->meanwhile = [&] {
        loop.advance(1s);
        EXPECT_EQ(model->speed(), (SpeedMeter::Reading{2000, 2000, peak}));
    };
    deliver(*held);
    loop.advance(500ms);
    EXPECT_EQ(model->speed().peak, peak);
}

TEST_F(ImportModelRunTest, TellsNoSpeedThatDoesNotChange) {
    heldFile("A.JPG");
    start();
    int changes = 0;
    const Handle observer = model->observe([&] { ++changes; });
    loop.advance(10s);
    EXPECT_EQ(changes, 0);
}

TEST_F(ImportModelRunTest, BeginsEachRunWithSpeedZero) {
    auto held = heldFile("A.JPG", 4000);
    start();
    loop.advance(1s);
    deliver(*held);
    EXPECT_EQ(model->speed().peak, 4000);
    held = heldFile("B.JPG", 400);
    readAgain();
    model->startImport();
    EXPECT_EQ(model->speed(), SpeedMeter::Reading());
    loop.advance(1s);
    deliver(*held);
    EXPECT_GT(model->speed().peak, 0);
    EXPECT_LT(model->speed().peak, 4000);
    EXPECT_EQ(model->log().back(),
              "Fertig: 1 geladen (" + formatBytes(400) + "), Ø " + formatSpeed(400));
}

TEST_F(ImportModelRunTest, EndsTheProgramWhenBytesCannotBeCounted) {
    store->capacity.reset();
    file(*attached, "A.JPG", "a")->cameraSize = std::numeric_limits<std::int64_t>::max();
    const auto held = heldFile("B.JPG");
    start();
    EXPECT_EQ(model->progress().bytesDone, std::numeric_limits<std::int64_t>::max());
    held->grow(1);
    EXPECT_DEATH(loop.advance(1s), "Fatal error: more bytes transferred");
}

TEST_F(ImportModelRunTest, OutlastsNegativeSizes) {
    file(*attached, "A.JPG", "")->cameraSize = -5;
    file(*attached, "B.JPG", "")->cameraSize = std::numeric_limits<std::int64_t>::min();
    const auto held = heldFile("C.JPG");
    start();
    held->grow(2);
    loop.advance(1s);
    deliver(*held);
    EXPECT_EQ(model->log().back(), "Fertig: 1 geladen (0 KB), 2 fehlgeschlagen");
}

// Progress

TEST_F(ImportModelRunTest, TellsEveryFileAndTheEnd) {
    file(*attached, "A.JPG", "aaaa")->error = Error{"Das Gerät antwortet nicht"};
    file(*attached, "B.JPG", "bb");
    file(*attached, "\xff.JPG", "c");
    make();
    connect(attached);
    model->startImport();
    record();
    loop.settle();
    const std::string summary = "Fertig: 2 geladen (" + formatBytes(7) + "), 1 fehlgeschlagen";
    const std::string ready = "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import.";
    EXPECT_EQ(phases, (Phases{Phase::importing, Phase::done, Phase::checking, Phase::ready}));
    EXPECT_EQ(statuses, (Statuses{"3 neue Dateien (" + formatBytes(7) + ") bereit zum Import.",
                                  "Lade 1 von 3: A.JPG", "Lade 2 von 3: B.JPG",
                                  "Lade 3 von 3: \uFFFD.JPG", checkingDest, summary, ready}));
    EXPECT_EQ(model->log(),
              (Log{"✗ A.JPG: Das Gerät antwortet nicht", "✓ JPG/B.JPG  (" + formatBytes(2) + ")",
                   "✓ JPG/\uFFFD.JPG  (" + formatBytes(1) + ")", summary}));
    EXPECT_EQ(model->progress(),
              (ImportRunner::Progress{.total = 3, .done = 2, .failed = 1, .bytesDone = 7}));
}

TEST_F(ImportModelRunTest, PublishesTheProgressOfTheFileInFlight) {
    const auto held = heldFile("A.JPG", 10);
    start();
    held->grow(3);
    loop.advance(500ms);
    EXPECT_EQ(model->progress(),
              (ImportRunner::Progress{
                  .total = 1, .currentName = "A.JPG", .currentBytes = 3, .currentTotal = 10}));
}

TEST_F(ImportModelRunTest, TellsTheShareOfThePlannedBytes) {
    const auto first = heldFile("A.JPG", 10);
    const auto second = heldFile("B.JPG", 30);
    start();
    EXPECT_EQ(model->totalBytesProgress(), 0);
    first->grow(5);
    loop.advance(500ms);
    EXPECT_EQ(model->totalBytesProgress(), 0.125);
    deliver(*first);
    EXPECT_EQ(model->totalBytesProgress(), 0.25);
    second->grow(10);
    loop.advance(500ms);
    EXPECT_EQ(model->totalBytesProgress(), 0.5);
    double atTheEnd = 0;
    const Handle observer = model->observe([&] {
        if (model->phase() == Phase::done) atTheEnd = model->totalBytesProgress();
    });
    deliver(*second);
    EXPECT_EQ(atTheEnd, 1);
    EXPECT_EQ(model->newBytes(), 0);
    EXPECT_EQ(model->totalBytesProgress(), 0);
}

// Cancel

TEST_F(ImportModelRunTest, EndsAfterTheCurrentFileWhenCancelled) {
    const auto held = heldFile("A.JPG");
    const auto next = heldFile("B.JPG");
    start();
    model->cancelImport();
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(model->status(), "Breche nach der aktuellen Datei ab …");
    deliver(*held);
    EXPECT_EQ(next->downloads, 0);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->log(), (Log{"✓ JPG/A.JPG  (" + formatBytes(4) + ")",
                                 "Fertig: 1 geladen (" + formatBytes(4) + "), abgebrochen"}));
    EXPECT_EQ(newNames(), (Names{"B.JPG"}));
}

TEST_F(ImportModelRunTest, LoadsNothingWhenCancelledAtOnce) {
    const auto held = heldFile("A.JPG");
    make();
    connect(attached);
    model->startImport();
    model->cancelImport();
    loop.settle();
    EXPECT_EQ(held->downloads, 0);
    EXPECT_EQ(model->log(), Log{"Fertig: 0 geladen (0 KB), abgebrochen"});
}

TEST_F(ImportModelRunTest, ForgetsACancelThatCameBeforeTheStart) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    model->cancelImport();
    model->startImport();
    loop.settle();
    EXPECT_EQ(model->log().back(), "Fertig: 1 geladen (" + formatBytes(4) + ")");
}

TEST_F(ImportModelRunTest, WaitsNoLongerForALostCameraOnceCancelled) {
    attached->deviceIdentity = "serial:1";
    heldFile("A.JPG");
    start();
    model->cameraBrowserDidRemove(attached);
    model->cancelImport();
    const auto returned = camera("C", "serial:1");
    returned->catalogue = attached->catalogue;
    connect(returned);
    EXPECT_EQ(model->phase(), Phase::ready);
}

// End

TEST_F(ImportModelRunTest, ShowsTheSummaryUntilTheScanEnds) {
    const auto held = heldFile("A.JPG");
    start();
    loop.advance(2s);
    held->deliver();
    while (model->phase() == Phase::importing) {
        if (!loop.stepMain()) loop.stepBackground();
    }
    const std::string summary = "Fertig: 1 geladen (" + formatBytes(4) + "), Ø " + formatSpeed(2);
    EXPECT_EQ(model->phase(), Phase::checking);
    EXPECT_EQ(model->status(), summary);
    EXPECT_EQ(model->log().back(), summary);
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_EQ(model->log().back(), summary);
}

TEST_F(ImportModelRunTest, KeepsTheSummaryWhenThereIsNothingToScan) {
    const auto held = heldFile("A.JPG");
    start();
    access->granted = false;
    deliver(*held);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "Fertig: 1 geladen (" + formatBytes(4) + ")");
}

TEST_F(ImportModelRunTest, TurnsToTheTrustedCameraThatWaits) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:2";
    other->deviceIdentity = "serial:2";
    const auto held = heldFile("A.JPG");
    start();
    model->cameraBrowserDidAdd(other);
    EXPECT_EQ(model->selectedID(), "A");
    record();
    deliver(*held);
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(phases, (Phases{Phase::importing, Phase::done, Phase::connecting}));
    EXPECT_EQ(statuses, (Statuses{"Lade 1 von 1: A.JPG", "Verbinde mit Kamera B …"}));
    EXPECT_EQ(model->log().back(), "Fertig: 1 geladen (" + formatBytes(4) + ")");
    EXPECT_EQ(attached->closed, 1);
    EXPECT_EQ(other->opened, 1);
}

TEST_F(ImportModelRunTest, TakesDoneForReady) {
    const auto held = heldFile("A.JPG");
    start();
    std::optional<Phase> filtered;
    const Handle observer = model->observe([&] {
        if (model->phase() != Phase::done || model->useFromDate()) return;
        attached->catalogChanged();
        model->setUseFromDate(true);
        filtered = model->phase();
    });
    held->deliver();
    while (model->phase() == Phase::importing) {
        if (!loop.stepMain()) loop.stepBackground();
    }
    EXPECT_EQ(filtered, Phase::ready);
    loop.settle();
    file(*attached, "B.JPG", "bb");
    loop.advance(reloadDelay);
    EXPECT_EQ(model->cameraFileCount(), 2);
}

// Disturbances

TEST_F(ImportModelRunTest, IsNotDisturbedByItsCamerasEvents) {
    const auto held = heldFile("A.JPG");
    start();
    record();
    attached->sessionOpened();
    attached->sessionOpened(Error{"Das Gerät ist belegt"});
    attached->catalogReady();
    attached->catalogChanged();
    loop.advance(10s);
    EXPECT_EQ(phases, (Phases{Phase::importing}));
    deliver(*held);
    EXPECT_EQ(model->log().back(),
              "Fertig: 1 geladen (" + formatBytes(4) + "), Ø " + formatSpeed(0.4));
}

TEST_F(ImportModelRunTest, IsOverWhenTheModelIsGone) {
    const auto held = heldFile("A.JPG");
    start();
    loop.advance(1s);
    model.reset();
    EXPECT_EQ(loop.timers(), 0);
    held->deliver();
    loop.advance(10s);
    EXPECT_EQ(store->files.count("/bilder/JPG/A.JPG"), 0);
    EXPECT_EQ(loop.mainTasks() + loop.backgroundTasks(), 0);
}

}  // namespace
}  // namespace bildkurier
