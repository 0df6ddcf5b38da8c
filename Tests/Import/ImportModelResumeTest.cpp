// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LinkedFolder.h"
#include "PluggedCameraTest.h"
#include "SlowMoves.h"

#include <functional>
#include <utility>

namespace bildkurier {
namespace {

using Phase = ImportModel::Phase;
using namespace std::string_literals;

class ImportModelResumeTest : public PluggedCameraTest {
protected:
    const std::string identity = "serial:1";
    const Names three = {"A.JPG", "B.JPG", "C.JPG"};

    /// Runs an import of `three` that is lost after `delivered` files.
    void loseImport(const std::string& id, int delivered) {
        const auto lost = plugIn(id, identity, three, delivered);
        if (!isImporting()) startImport();
        ASSERT_TRUE(isImporting());
        unplug(lost);
    }
};

TEST_F(ImportModelResumeTest, EndsTheRunWithoutSummaryWhenItsCameraIsLost) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    startImport();
    ASSERT_TRUE(isImporting());
    ASSERT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    ASSERT_EQ(loop.timers(), 2);
    loop.advance(Duration(90));
    unplug(lost);
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->status(), goesOn);
    EXPECT_EQ(model->log(), (Log{loaded("A.JPG"), disconnected(1, 3)}));
    EXPECT_TRUE(model->cameras().empty());
    EXPECT_EQ(model->selectedID(), std::nullopt);
    EXPECT_TRUE(model->newFiles().empty());
    EXPECT_EQ(model->newBytes(), 0);
    EXPECT_EQ(model->cameraFileCount(), 0);
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelResumeTest, GoesOnWithWhatIsMissingWhenTheCameraReturns) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    startImport();
    unplug(lost);
    Log log = model->log();
    loop.advance(Duration(61));
    statuses = {goesOn};

    const auto back = holding("2", identity, three);
    back->deviceName = "EOS";
    model->cameraBrowserDidAdd(back);
    EXPECT_EQ(statuses, (Names{goesOn, "EOS wieder verbunden. Import wird fortgesetzt …",
                               "Verbinde mit EOS …"}));
    EXPECT_EQ(model->selectedID(), "2");
    EXPECT_EQ(model->phase(), Phase::connecting);
    back->sessionOpened();
    EXPECT_EQ(model->phase(), Phase::reading);
    back->catalogReady();
    EXPECT_EQ(model->phase(), Phase::checking);
    while (model->phase() == Phase::checking) ASSERT_TRUE(loop.stepBackground() || loop.stepMain());

    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(newNames(), (Names{"B.JPG", "C.JPG"}));
    log.push_back(continued(2));
    EXPECT_EQ(model->log(), log);
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    EXPECT_EQ(loop.timers(), 1);

    loop.settle();
    EXPECT_EQ(fileOf(*back, 0).downloads, 0);
    EXPECT_EQ(imported(), inTypeFolder(three));
    const auto bytes = std::ssize(contentsOf("B.JPG")) + std::ssize(contentsOf("C.JPG"));
    log.insert(log.end(), {loaded("B.JPG"), loaded("C.JPG"),
                           "Fertig: 2 geladen (" + formatBytes(bytes) + ")"});
    EXPECT_EQ(model->log(), log);
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelResumeTest, CallsAReturningCameraWithoutNameKamera) {
    start();
    loseImport("1", 1);
    const auto back = camera("2", identity);
    back->deviceName.reset();
    model->cameraBrowserDidAdd(back);
    EXPECT_TRUE(showed("Kamera wieder verbunden. Import wird fortgesetzt …"));
    EXPECT_EQ(model->status(), "Verbinde mit Kamera …");
}

TEST_F(ImportModelResumeTest, RecognisesTheCameraByItsIdentityOnly) {
    start();
    loseImport("1", 1);
    const auto other = plugIn("1", "serial:2", three);
    EXPECT_EQ(model->phase(), Phase::ready);
    unplug(other);
    plugIn("9", identity, three);
    EXPECT_EQ(imported(), inTypeFolder(three));
}

TEST_F(ImportModelResumeTest, IgnoresLateAnswersOfTheAbandonedRun) {
    const struct {
        const char* answer;
        bool whileGoingOn;
        std::optional<Error> error;
    } cases[] = {
        {"delivered while the camera is away", false, {}},
        {"failed while the camera is away", false, Error{"Zeitüberschreitung"}},
        {"delivered while the run goes on", true, {}},
        {"failed while the run goes on", true, Error{"Zeitüberschreitung"}},
    };
    for (const auto& [answer, whileGoingOn, error] : cases) {
        SCOPED_TRACE(answer);
        store->removeItem(settings->storedDestination);
        start();
        const auto lost = plugIn("1", identity, three, 1);
        startImport();
        ASSERT_EQ(fileOf(*lost, 1).downloads, 1);
        unplug(lost);
        std::shared_ptr<FakeCamera> back;
        if (whileGoingOn) back = plugIn("2", identity, three, 2);
        const Log log = model->log();
        const auto progress = model->progress();
        const auto phase = model->phase();
        const std::string status = model->status();
        const Tree before = imported();

        fileOf(*lost, 1).error = error;
        fileOf(*lost, 1).deliver();
        loop.settle();
        EXPECT_EQ(model->log(), log);
        EXPECT_EQ(model->progress(), progress);
        EXPECT_EQ(model->phase(), phase);
        EXPECT_EQ(model->status(), status);
        EXPECT_EQ(imported(), before);
        EXPECT_EQ(fileOf(*lost, 2).downloads, 0);

        if (!back) back = plugIn("2", identity, three, 2);
        fileOf(*back, 2).deliver();
        loop.settle();
        EXPECT_EQ(imported(), inTypeFolder(three));
    }
}

TEST_F(ImportModelResumeTest, DoesNotLoadAgainWhatReachedItsPlaceAfterAll) {
    start();
    const auto lost = plugIn("1", identity, three, 0);
    startImport();
    fileOf(*lost, 0).deliver();
    ASSERT_TRUE(loop.stepMain());
    ASSERT_TRUE(model->progress().isTransferring);
    ASSERT_TRUE(loop.stepBackground());
    unplug(lost);
    EXPECT_EQ(model->log(), (Log{disconnected(0, 3), loaded("A.JPG")}));
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));

    const auto back = plugIn("2", identity, three);
    EXPECT_EQ(model->log().at(2), continued(2));
    EXPECT_EQ(fileOf(*back, 0).downloads, 0);
    EXPECT_EQ(imported(), inTypeFolder(three));
}

class ResumedRenamingTest : public ImportModelResumeTest {
protected:
    /// Two files of one name, then others. The first `delivered` come at once.
    std::shared_ptr<FakeCamera> twins(const std::string& id, int delivered) {
        auto made = camera(id, identity);
        for (const auto& contents : {"eins"s, "zweites"s, "Nummer drei"s}) {
            file(*made, contents == "Nummer drei" ? "B.JPG" : "A.JPG", contents)->holdsBack =
                std::cmp_greater(made->catalogue.size() + 1, delivered);
        }
        return made;
    }

    /// Begins with the twins and loses their camera in the midst of the third file.
    void loseAfterTwins() {
        start();
        const auto lost = twins("1", 2);
        connect(lost);
        startImport();
        ASSERT_EQ(imported(), both);
        unplug(lost);
    }

    std::vector<int> downloads(const FakeCamera& of) const {
        return {fileOf(of, 0).downloads, fileOf(of, 1).downloads, fileOf(of, 2).downloads};
    }

    const Tree both = {{"JPG/A.JPG", "eins"}, {"JPG/A_1.JPG", "zweites"}};
    const Tree complete = {
        {"JPG/A.JPG", "eins"}, {"JPG/A_1.JPG", "zweites"}, {"JPG/B.JPG", "Nummer drei"}};
};

TEST_F(ResumedRenamingTest, KnowsAgainWhatItSavedUnderAnotherName) {
    loseAfterTwins();
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(downloads(*back), (std::vector{0, 0, 1}));
    EXPECT_EQ(imported(), complete);
    EXPECT_EQ(std::ranges::count(model->log(), continued(1)), 1);
}

TEST_F(ResumedRenamingTest, KnowsItAgainAfterSeveralDisconnects) {
    loseAfterTwins();
    for (const auto* id : {"2", "3"}) {
        const auto again = twins(id, 0);
        connect(again);
        EXPECT_EQ(downloads(*again), (std::vector{0, 0, 1}));
        unplug(again);
    }
    connect(twins("4", all));
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, SaysThatNothingIsMissingWhenOnlyRenamedFilesWouldBe) {
    loseAfterTwins();
    store->files["/bilder/JPG/B.JPG"] = "Nummer drei";
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(model->status(), "Nach der Trennung fehlt nichts mehr im Zielordner.");
    EXPECT_TRUE(model->newFiles().empty());
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, KnowsItAgainThoughItArrivedAfterTheDisconnect) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    start();
    const auto lost = twins("1", 1);
    connect(lost);
    startImport();
    slow->meanwhile = [&] { unplug(lost); };
    fileOf(*lost, 1).deliver();
    loop.settle();
    ASSERT_EQ(imported(), both);
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(downloads(*back), (std::vector{0, 0, 1}));
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, KnowsItAgainWhateverTheDateFilterSays) {
    settings->storedAutoImport = true;
    settings->storedIdentity = identity;
    start();
    const auto lost = twins("1", 2);
    connect(lost);
    ASSERT_EQ(imported(), both);
    unplug(lost);
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(downloads(*back), (std::vector{0, 0, 1}));
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, KnowsItAgainAfterWaitingForAnotherProcess) {
    loseAfterTwins();
    lock->takenByAnother = true;
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(newNames(), Names{"B.JPG"});
    model->setUseFromDate(true);
    model->setUseFromDate(false);
    EXPECT_EQ(newNames(), Names{"B.JPG"});
    lock->takenByAnother = false;
    loop.advance(Duration(5));
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, LoadsAgainWhatIsGoneMeanwhile) {
    loseAfterTwins();
    store->files.erase("/bilder/JPG/A_1.JPG");
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(downloads(*back), (std::vector{0, 1, 1}));
    EXPECT_EQ(imported(), complete);
}

TEST_F(ResumedRenamingTest, LoadsEverythingIntoAnotherDestination) {
    loseAfterTwins();
    ASSERT_TRUE(store->createDirectory(Url::file("/archiv/JPG")));
    store->files["/archiv/JPG/A_1.JPG"] = "fremdes";  // as long as the second twin
    model->setDest(Url::file("/archiv"));
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(downloads(*back), (std::vector{1, 1, 1}));
}

TEST_F(ResumedRenamingTest, ForgetsItWhenTheImportIsNotTakenUp) {
    loseAfterTwins();
    model->cancelImport();
    const auto back = twins("2", all);
    connect(back);
    EXPECT_EQ(newNames(), (Names{"A.JPG", "B.JPG"}));
    startImport();
    EXPECT_EQ(downloads(*back), (std::vector{0, 1, 1}));
    EXPECT_EQ(imported().at("JPG/A_2.JPG"), "zweites");
}

TEST_F(ResumedRenamingTest, ForgetsItWhenTheImportIsCompleteOrBegunAnew) {
    loseAfterTwins();
    const auto back = twins("2", all);
    connect(back);
    ASSERT_EQ(imported(), complete);
    EXPECT_EQ(newNames(), Names{"A.JPG"}) << "as after an import without a disconnect";
    store->files.erase("/bilder/JPG/A_1.JPG");
    store->files["/bilder/JPG/A_1.JPG"] = "fremdes";
    fileOf(*back, 1).holdsBack = true;
    startImport();
    unplug(back);
    const auto again = twins("3", all);
    connect(again);
    EXPECT_EQ(downloads(*again), (std::vector{0, 1, 0}));
}

TEST_F(ResumedRenamingTest, DoesNotTakeAnotherCamerasFilesForItsOwn) {
    loseAfterTwins();
    const auto other = camera("B", "serial:2");
    file(*other, "A.JPG", "zweites")->holdsBack = true;
    connect(other);
    startImport();
    EXPECT_EQ(fileOf(*other, 0).downloads, 1);
    unplug(other);
    const auto again = camera("C", "serial:2");
    file(*again, "A.JPG", "zweites");
    connect(again);
    EXPECT_EQ(fileOf(*again, 0).downloads, 1);
    EXPECT_EQ(imported().at("JPG/A_2.JPG"), "zweites");
}

TEST_F(ImportModelResumeTest, LoadsNothingMoreOnceItsCameraIsLost) {
    start();
    const auto lost = plugIn("1", identity, three);
    model->startImport();
    ASSERT_TRUE(loop.stepMain());
    ASSERT_EQ(loop.backgroundTasks(), 1);
    unplug(lost);
    EXPECT_EQ(fileOf(*lost, 0).downloads, 0);
    EXPECT_EQ(model->log(), Log{disconnected(0, 3)});
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelResumeTest, CountsTheFilesOfTheInterruptedRunOnly) {
    start();
    auto attached = plugIn("1", identity, {"X.JPG", "Y.JPG"});
    startImport();
    ASSERT_EQ(model->progress().done, 2);
    attached->catalogue.clear();
    for (const auto& name : three) file(*attached, name, contentsOf(name));
    attached->catalogReady();
    loop.settle();

    model->startImport();
    model->cameraBrowserDidRemove(attached);
    EXPECT_EQ(model->log(), Log{disconnected(0, 3)});
}

TEST_F(ImportModelResumeTest, CountsAFileThatCameIntoItsPlaceJustBefore) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    model->startImport();
    while (model->log().empty()) ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    ASSERT_EQ(model->log(), Log{loaded("A.JPG")});
    model->cameraBrowserDidRemove(lost);
    EXPECT_EQ(model->log(), (Log{loaded("A.JPG"), disconnected(1, 3)}));
}

TEST_F(ImportModelResumeTest, GivesUpAfterThreeFruitlessDisconnectsInARow) {
    start();
    Log log;
    for (int drop = 1; drop <= 3; ++drop) {
        SCOPED_TRACE(drop);
        if (drop > 1) log.push_back(continued(3));
        loseImport(std::to_string(drop), 0);
        EXPECT_EQ(model->phase(), Phase::noCamera);
        EXPECT_EQ(model->status(), drop < 3 ? goesOn : gaveUp);
        log.push_back(disconnected(0, 3));
        if (drop == 3) log.push_back("✗ "s + gaveUp);
        EXPECT_EQ(model->log(), log);
        loop.advance(Duration(20));
    }
    plugIn("4", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->log(), log);
    EXPECT_EQ(imported(), Tree());
    EXPECT_EQ(model->newFiles().size(), 3);
}

TEST_F(ImportModelResumeTest, StartsAfreshByHandAfterGivingUp) {
    start();
    for (const auto* id : {"1", "2", "3"}) loseImport(id, 0);
    plugIn("4", identity, three, 1);
    startImport();
    EXPECT_EQ(model->log(), Log{loaded("A.JPG")});
    unplug(std::static_pointer_cast<FakeCamera>(model->cameras().front()));
    EXPECT_EQ(model->status(), goesOn);
}

TEST_F(ImportModelResumeTest, GoesOnForEverAsLongAsSomethingArrivesInBetween) {
    start();
    Names many;
    for (int number = 10; number < 30; ++number) many.push_back(std::to_string(number) + ".JPG");
    int arrived = 0;
    for (int drop = 1; std::cmp_less(arrived, many.size()); ++drop) {
        SCOPED_TRACE(drop);
        const bool fruitless = drop % 3 != 0;
        const auto attached =
            plugIn(std::to_string(drop), identity, many, fruitless ? arrived : arrived + 1);
        if (drop == 1) startImport();
        if (!fruitless) ++arrived;
        if (std::cmp_equal(arrived, many.size())) break;
        ASSERT_TRUE(isImporting());
        unplug(attached);
        ASSERT_EQ(model->status(), goesOn);
    }
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), inTypeFolder(many));
}

TEST_F(ImportModelResumeTest, CountsAnewAfterARunThatLoadedAFile) {
    start();
    for (const auto* id : {"1", "2"}) loseImport(id, 0);
    const auto back = plugIn("3", identity, three);
    ASSERT_EQ(imported(), inTypeFolder(three));
    unplug(back);
    store->removeItem(Url::file("/bilder/JPG"));
    for (const auto* id : {"4", "5"}) {
        loseImport(id, 0);
        EXPECT_EQ(model->status(), goesOn);
    }
    loseImport("6", 0);
    EXPECT_EQ(model->status(), gaveUp);
}

TEST_F(ImportModelResumeTest, KeepsCountingAfterARunThatLoadedNothing) {
    start();
    for (const auto* id : {"1", "2"}) loseImport(id, 0);
    const auto back = holding("3", identity, three);
    for (std::size_t index = 0; index < 3; ++index)
        fileOf(*back, index).error = Error{"Lesefehler"};
    connect(back);
    ASSERT_EQ(model->phase(), Phase::ready);
    ASSERT_EQ(model->progress().failed, 3);
    unplug(back);
    loseImport("4", 0);
    EXPECT_EQ(model->status(), gaveUp);
}

TEST_F(ImportModelResumeTest, KeepsCountingAfterARunThatWasCancelled) {
    start();
    for (const auto* id : {"1", "2"}) loseImport(id, 0);
    const auto back = plugIn("3", identity, three, 0);
    model->cancelImport();
    fileOf(*back, 0).error = Error{"Lesefehler"};
    fileOf(*back, 0).deliver();
    loop.settle();
    ASSERT_EQ(model->log().back(), "Fertig: 0 geladen (" +
                                       formatBytes(std::ssize(contentsOf("A.JPG"))) +
                                       "), 1 fehlgeschlagen, abgebrochen");
    unplug(back);
    loseImport("4", 0);
    EXPECT_EQ(model->status(), gaveUp);
}

TEST_F(ImportModelResumeTest, KeepsCountingAfterARunThatWasCancelledBeforeAnyFile) {
    start();
    for (const auto* id : {"1", "2"}) loseImport(id, 0);
    const auto back = holding("3", identity, three);
    model->cameraBrowserDidAdd(back);
    back->sessionOpened();
    back->catalogReady();
    while (!isImporting()) ASSERT_TRUE(loop.stepBackground() || loop.stepMain());
    model->cancelImport();
    loop.settle();
    ASSERT_EQ(model->log().back(), "Fertig: 0 geladen (0 KB), abgebrochen");
    unplug(back);
    loseImport("4", 0);
    EXPECT_EQ(model->status(), gaveUp);
}

TEST_F(ImportModelResumeTest, GivesUpAtOnceOnACameraThatCannotBeRecognised) {
    for (const int delivered : {0, 2}) {
        SCOPED_TRACE(delivered);
        store->removeItem(settings->storedDestination);
        start();
        const auto lost = plugIn("1", std::nullopt, three, delivered);
        startImport();
        unplug(lost);
        EXPECT_EQ(model->status(), gaveUp);
        Log log;
        if (delivered == 2) log = {loaded("A.JPG"), loaded("B.JPG")};
        log.push_back(disconnected(delivered, 3));
        log.push_back("✗ "s + gaveUp);
        EXPECT_EQ(model->log(), log);
        plugIn("2", std::nullopt, three);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(model->log(), log);
    }
}

TEST_F(ImportModelResumeTest, ResumesWithTheDateFilterIgnoredIfTheInterruptedRunIgnoredIt) {
    const struct {
        bool automatic;
        Names resumed;
    } cases[] = {{true, {"A.JPG", "B.JPG", "C.JPG"}}, {false, {"C.JPG"}}};
    for (const auto& [automatic, resumed] : cases) {
        SCOPED_TRACE(automatic);
        settings->storedUseFromDate = true;
        settings->storedAutoImport = automatic;
        settings->storedIdentity = identity;
        start();
        const auto dated = [&](const std::string& id) {
            auto made = holding(id, identity, three, 0);
            for (int day = 0; day < 3; ++day) {
                fileOf(*made, static_cast<std::size_t>(day)).shot =
                    loop.date() + std::chrono::days(day);
            }
            return made;
        };
        const auto lost = dated("1");
        connect(lost);
        if (!automatic) startImport();
        ASSERT_TRUE(isImporting());
        unplug(lost);
        connect(dated("2"));
        EXPECT_TRUE(isImporting());
        EXPECT_EQ(newNames(), resumed);
        EXPECT_EQ(model->log().back(), continued(static_cast<int>(resumed.size())));
    }
}

TEST_F(ImportModelResumeTest, ResumesUnderTheDateFilterAsItIsThen) {
    start();
    const auto dated = [&](const std::string& id) {
        auto made = holding(id, identity, three, 0);
        fileOf(*made, 0).shot = loop.date();
        fileOf(*made, 1).shot = loop.date() + std::chrono::days(1);
        return made;
    };
    const auto lost = dated("1");
    connect(lost);
    startImport();
    ASSERT_EQ(model->progress().total, 3);
    unplug(lost);
    model->setUseFromDate(true);
    connect(dated("2"));
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(newNames(), Names{"B.JPG"});
}

TEST_F(ImportModelResumeTest, SaysSoWhenNothingIsMissingAnyMore) {
    start();
    loseImport("1", 1);
    for (const auto& name : three) store->files["/bilder/" + name] = contentsOf(name);
    const Log log = model->log();
    const auto back = plugIn("2", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "Nach der Trennung fehlt nichts mehr im Zielordner.");
    EXPECT_EQ(model->log(), log);

    unplug(back);
    store->removeItem(settings->storedDestination);
    plugIn("3", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
}

TEST_F(ImportModelResumeTest, GivesTheResumeUpWhenItsStartFails) {
    const auto full = [this] { store->capacity = 0; };
    const auto withdrawn = [this] { access->granted = false; };
    const struct {
        std::function<void()> obstacle;
        std::string status;
    } cases[] = {
        {full, "Kann Zielordner nicht beschreiben: Zu wenig Platz für die größte Datei (" +
                   formatBytes(std::ssize(contentsOf("A.JPG"))) + " nötig, " + formatBytes(0) +
                   " frei)."},
        {withdrawn, ImportModel::chooseFolderStatus},
    };
    for (const auto& [obstacle, status] : cases) {
        SCOPED_TRACE(status);
        store->removeItem(settings->storedDestination);
        start();
        loseImport("1", 0);
        const Log log = model->log();
        obstacle();
        const auto back = plugIn("2", identity, three, 0);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(model->status(), status);
        EXPECT_EQ(model->log(), log);
        EXPECT_EQ(sleepBlocker->reason, std::nullopt);
        EXPECT_EQ(loop.timers(), 0);

        store->capacity = 1'000'000'000;
        access->granted = true;
        model->setDest(model->dest());
        loop.settle();
        EXPECT_EQ(model->phase(), Phase::ready);
        startImport();
        EXPECT_TRUE(isImporting());
        EXPECT_EQ(model->log(), Log());
        unplug(back);
        EXPECT_EQ(model->log(), Log{disconnected(0, 3)});
    }
}

TEST_F(ImportModelResumeTest, WaitsForTheEndOfAnotherProcessesImport) {
    start();
    loseImport("1", 1);
    Log log = model->log();
    lock->takenByAnother = true;
    const auto back = plugIn("2", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "Es läuft schon ein Import.");
    log.push_back("↻ " + time() + " Fortsetzung wartet: Es läuft schon ein Import.");
    EXPECT_EQ(model->log(), log);
    model->setUseFromDate(true);
    model->setUseFromDate(false);
    model->setAutoImportEnabled(false);
    loop.advance(Duration(20));
    EXPECT_EQ(model->log(), log) << "it is told once";
    EXPECT_EQ(loop.timers(), 1);

    store->files["/bilder/JPG/B.JPG"] = contentsOf("B.JPG");  // by the other process
    lock->takenByAnother = false;
    loop.advance(Duration(5));
    log.push_back(continued(1));
    EXPECT_EQ(std::ranges::count(model->log(), log.back()), 1);
    EXPECT_EQ(imported(), inTypeFolder(three));
    EXPECT_EQ(fileOf(*back, 1).downloads, 0);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelResumeTest, WaitsForTheFolderInWhichItBegan) {
    start();
    loseImport("1", 1);
    Log log = model->log();
    const auto disk = std::exchange(store->files, {});
    const auto folders = std::exchange(store->folders, {});
    plugIn("2", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), "Zielordner fehlt oder ist nicht beschreibbar.");
    log.push_back("↻ " + time() +
                  " Fortsetzung wartet: Zielordner fehlt oder ist nicht beschreibbar.");
    loop.advance(Duration(20));
    EXPECT_EQ(model->log(), log) << "it is told once";
    EXPECT_FALSE(store->fileExists(Url::file("/bilder")));
    EXPECT_FALSE(lock->held);

    store->files = disk;
    store->folders = folders;
    loop.advance(Duration(5));
    EXPECT_EQ(imported(), inTypeFolder(three));
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelResumeTest, WaitsForAnotherProcessNoLongerOnceCancelled) {
    start();
    loseImport("1", 1);
    lock->takenByAnother = true;
    plugIn("2", identity, three);
    model->cancelImport();
    lock->takenByAnother = false;
    loop.advance(Duration(10));
    EXPECT_FALSE(isImporting());
    EXPECT_EQ(loop.timers(), 0);
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));
}

TEST_F(ImportModelResumeTest, TakesAFileThatArrivedAfterAllForProgress) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    start();
    auto lost = plugIn("0", identity, three, 0);
    startImport();
    for (std::size_t index = 0; index < three.size(); ++index) {
        slow->meanwhile = [&] { unplug(lost); };
        fileOf(*lost, index).deliver();
        loop.settle();
        EXPECT_EQ(model->log().back(), loaded(three[index]));
        EXPECT_EQ(model->status(), goesOn);
        lost = plugIn(std::to_string(index + 1), identity, three, 0);
    }
    EXPECT_EQ(model->status(), "Nach der Trennung fehlt nichts mehr im Zielordner.");
    EXPECT_EQ(imported(), inTypeFolder(three));
}

TEST_F(ImportModelResumeTest, WaitsUntilTheReturnedCameraReportsFiles) {
    start();
    loseImport("1", 1);
    const auto back = plugIn("2", identity, {});
    EXPECT_EQ(model->status(), "Die Kamera meldet keine Dateien.");
    EXPECT_EQ(model->phase(), Phase::ready);
    for (const auto& name : three) {
        const auto found = file(*back, name, contentsOf(name));
        found->holdsBack = true;
        found->shot = loop.date() + std::chrono::days(std::ssize(back->catalogue));
    }
    back->catalogChanged();
    loop.advance(Duration(1.5));
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(newNames(), (Names{"B.JPG", "C.JPG"}));
    EXPECT_EQ(model->log().back(), continued(2));
}

TEST_F(ImportModelResumeTest, KeepsWaitingForItsCameraWhenAnotherIsPluggedIn) {
    start();
    loseImport("1", 1);
    const Log log = model->log();
    const auto other = plugIn("B", "serial:2", {"X.JPG"});
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(newNames(), Names{"X.JPG"});
    EXPECT_EQ(model->log(), log);

    plugIn("2", identity, three, 0);
    EXPECT_EQ(model->selectedID(), "2");
    EXPECT_EQ(other->closed, 1);
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(newNames(), (Names{"B.JPG", "C.JPG"}));
}

TEST_F(ImportModelResumeTest, OpensACameraThatMayBeTheLostOneButWaitsUntilItIs) {
    for (const auto& actual : {identity, "serial:2"s}) {
        store->removeItem(settings->storedDestination);
        start();
        loseImport("1", 1);
        plugIn("B", "serial:3", {"X.JPG"});
        const auto back = holding("2", identity, three);
        back->identityIsFinal = false;
        connect(back);
        EXPECT_EQ(model->selectedID(), "2");
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_TRUE(model->awaitsCamera());
        EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));

        back->deviceIdentity = actual;
        back->identityIsFinal = true;
        model->cameraBrowserDidIdentify(back);
        loop.settle();
        EXPECT_EQ(model->awaitsCamera(), actual != identity);
        EXPECT_EQ(imported(), inTypeFolder(actual == identity ? three : Names{"A.JPG"}));
    }
}

TEST_F(ImportModelResumeTest, KnowsACameraAgainThatDidNotSayWhoItIsBefore) {
    start();
    const auto lost = plugIn("1", "persistent:usb", three, 1);
    startImport();
    unplug(lost);
    const auto back = holding("2", identity, three);
    back->formerIdentity = "persistent:usb";
    connect(back);
    EXPECT_EQ(imported(), inTypeFolder(three));
    EXPECT_EQ(model->log()[2], continued(2));
}

TEST_F(ImportModelResumeTest, OpensTheNextCameraAndSaysThatTheImportGoesOn) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    const auto next = holding("B", "serial:2", {"X.JPG"});
    model->cameraBrowserDidAdd(next);
    startImport();
    unplug(lost);
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(next->opened, 1);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(model->status(), goesOn);
    deliver(*next);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(newNames(), Names{"X.JPG"});
}

TEST_F(ImportModelResumeTest, OpensTheNextCameraThoughItWasChosenDuringTheRun) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    const auto next = holding("B", "serial:2", {"X.JPG"});
    model->cameraBrowserDidAdd(next);
    startImport();
    model->setSelectedID("B");
    ASSERT_EQ(next->opened, 0);
    unplug(lost);
    EXPECT_EQ(next->opened, 1);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_TRUE(model->newFiles().empty());
}

TEST_F(ImportModelResumeTest, ForgetsTheCardOfACameraThatWasNotSelectedAnyMore) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    startImport();
    model->setSelectedID(std::nullopt);
    unplug(lost);
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_TRUE(model->newFiles().empty());
    EXPECT_EQ(model->cameraFileCount(), 0);
}

TEST_F(ImportModelResumeTest, NeverLoadsAnotherCameraInPlaceOfTheOneThatReturned) {
    const auto pluggedOut = [this](const auto& back) { unplug(back); };
    const auto otherChosen = [this](const auto&) { model->setSelectedID("B"); };
    const std::function<void(const std::shared_ptr<FakeCamera>&)> cases[] = {pluggedOut,
                                                                             otherChosen};
    for (const auto& otherComesFirst : cases) {
        store->removeItem(settings->storedDestination);
        start();
        loseImport("1", 1);
        const auto other = plugIn("B", "serial:2", {"X.JPG"});
        const auto back = holding("2", identity, three, 0);
        model->cameraBrowserDidAdd(back);
        ASSERT_EQ(model->selectedID(), "2");
        otherComesFirst(back);
        ASSERT_EQ(model->selectedID(), "B");
        deliver(*other);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(fileOf(*other, 0).downloads, 0);

        if (model->cameras().size() == 2) {
            model->setSelectedID("2");
            deliver(*back);
        } else {
            plugIn("3", identity, three, 0);
        }
        EXPECT_TRUE(isImporting());
        EXPECT_EQ(newNames(), (Names{"B.JPG", "C.JPG"}));
    }
}

TEST_F(ImportModelResumeTest, StaysPendingWhenTheCameraIsLostAgainBeforeItIsRead) {
    start();
    loseImport("1", 1);
    const Log log = model->log();
    const auto unopened = holding("2", identity, three);
    model->cameraBrowserDidAdd(unopened);
    unplug(unopened);
    EXPECT_EQ(model->status(), ImportModel::searchingStatus);
    const auto unread = holding("3", identity, three);
    model->cameraBrowserDidAdd(unread);
    unread->sessionOpened();
    unplug(unread);
    const auto unchecked = holding("4", identity, three);
    model->cameraBrowserDidAdd(unchecked);
    unchecked->sessionOpened();
    unchecked->catalogReady();
    ASSERT_EQ(model->phase(), Phase::checking);
    unplug(unchecked);
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->log(), log);
    plugIn("5", identity, three, 1);
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(newNames(), (Names{"B.JPG", "C.JPG"}));
}

TEST_F(ImportModelResumeTest, DoesNotInterruptTheImportOfAnotherCamera) {
    start();
    loseImport("1", 1);
    const auto other = plugIn("B", "serial:2", {"X.JPG"}, 0);
    startImport();
    ASSERT_TRUE(isImporting());
    const std::string status = model->status();
    const auto back = plugIn("2", identity, three, 0);
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(model->status(), status);
    EXPECT_EQ(back->opened, 0);
    fileOf(*other, 0).deliver();
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);

    model->setSelectedID("2");
    deliver(*back);
    EXPECT_EQ(model->phase(), Phase::ready);
}

TEST_F(ImportModelResumeTest, GoesOnOnlyWithTheCameraThatWasLostLast) {
    start();
    loseImport("1", 1);
    const auto other = plugIn("B", "serial:2", {"X.JPG"}, 0);
    startImport();
    unplug(other);
    const auto first = plugIn("2", identity, three, 0);
    EXPECT_EQ(model->phase(), Phase::ready);
    plugIn("3", "serial:2", {"X.JPG"}, 0);
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(newNames(), Names{"X.JPG"});
    EXPECT_EQ(first->closed, 1);
}

TEST_F(ImportModelResumeTest, LetsTheTrustedCameraGoFirstAndWaitsOn) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:2";
    start();
    loseImport("1", 1);
    const auto trusted = plugIn("B", "serial:2", {"X.JPG"}, 0);
    ASSERT_TRUE(isImporting());
    EXPECT_EQ(newNames(), Names{"X.JPG"});
    EXPECT_TRUE(model->log().front().starts_with("↻ Auto-Import: 1 fehlende Dateien"));
}

TEST_F(ImportModelResumeTest, IsNotPendingAfterTheEndOfARun) {
    start();
    loseImport("1", 1);
    const auto back = plugIn("2", identity, three);
    ASSERT_EQ(imported(), inTypeFolder(three));
    unplug(back);
    store->removeItem(Url::file("/bilder/JPG"));
    plugIn("3", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelResumeTest, CanBeCancelledWhileTheCameraIsAway) {
    start();
    loseImport("1", 1);
    model->cancelImport();
    EXPECT_EQ(model->status(), "Breche nach der aktuellen Datei ab …");
    plugIn("2", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));
    startImport();
    EXPECT_EQ(imported(), inTypeFolder(three));
}

TEST_F(ImportModelResumeTest, DoesNotTakeUpARunThatWasBeingCancelled) {
    start();
    const auto lost = plugIn("1", identity, three, 1);
    startImport();
    model->cancelImport();
    unplug(lost);
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->status(), ImportModel::searchingStatus);
    EXPECT_EQ(model->log(), (Log{loaded("A.JPG"), disconnected(1, 3)}));
    plugIn("2", identity, three);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));
}

TEST_F(ImportModelResumeTest, NotesNothingWhenTheCameraIsRemovedWithoutARun) {
    const auto connecting = [](FakeCamera&) {};
    const auto reading = [](FakeCamera& attached) { attached.sessionOpened(); };
    const auto checking = [](FakeCamera& attached) {
        attached.sessionOpened();
        attached.catalogReady();
    };
    const auto ready = [this](FakeCamera& attached) { deliver(attached); };
    const struct {
        Phase phase;
        std::function<void(FakeCamera&)> reach;
    } cases[] = {{Phase::connecting, connecting},
                 {Phase::reading, reading},
                 {Phase::checking, checking},
                 {Phase::ready, ready}};
    for (const auto& [phase, reach] : cases) {
        SCOPED_TRACE(static_cast<int>(phase));
        start();
        const auto attached = holding("1", identity, three);
        model->cameraBrowserDidAdd(attached);
        reach(*attached);
        ASSERT_EQ(model->phase(), phase);
        unplug(attached);
        EXPECT_EQ(model->phase(), Phase::noCamera);
        EXPECT_EQ(model->status(), ImportModel::searchingStatus);
        EXPECT_EQ(model->selectedID(), std::nullopt);
        EXPECT_EQ(model->log(), Log());
        plugIn("2", identity, three);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(imported(), Tree());
    }
}

TEST_F(ImportModelResumeTest, GoesOnImportingWhenAnotherCameraIsRemoved) {
    start();
    const auto attached = plugIn("1", identity, three, 1);
    const auto other = camera("B", "serial:2");
    model->cameraBrowserDidAdd(other);
    startImport();
    const Log log = model->log();
    const std::string status = model->status();
    unplug(other);
    EXPECT_EQ(model->cameras(), (std::vector<std::shared_ptr<Camera>>{attached}));
    EXPECT_EQ(model->selectedID(), "1");
    EXPECT_TRUE(isImporting());
    EXPECT_EQ(model->log(), log);
    EXPECT_EQ(model->status(), status);
    EXPECT_EQ(sleepBlocker->reason, "Bildkurier läuft");
    fileOf(*attached, 1).deliver();
    loop.settle();
    fileOf(*attached, 2).deliver();
    loop.settle();
    EXPECT_EQ(imported(), inTypeFolder(three));
}

TEST_F(ImportModelResumeTest, WaitsForTheFileThatIsOnItsWayWhenTheCameraIsLost) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    start();
    const auto lost = plugIn("1", identity, three, 0);
    std::shared_ptr<FakeCamera> back;
    slow->meanwhile = [&] {
        unplug(lost);
        EXPECT_TRUE(lock->held) << "another process may not start either";
        back = plugIn("2", identity, three);
        loop.advance(Duration(60));
        EXPECT_EQ(model->phase(), Phase::checking);
        EXPECT_EQ(model->status(),
                  "Warte auf die Datei, die beim Abbruch des Imports noch unterwegs war …");
        EXPECT_TRUE(lock->held);
        EXPECT_EQ(imported(), Tree());
    };
    startImport();
    fileOf(*lost, 0).deliver();
    loop.settle();
    ASSERT_TRUE(back);
    EXPECT_EQ(fileOf(*back, 0).downloads, 0) << "it has arrived after all";
    EXPECT_EQ(model->log().at(1), loaded("A.JPG"));
    EXPECT_EQ(model->log().at(2), continued(2));
    EXPECT_EQ(imported(), inTypeFolder(three));
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_FALSE(lock->held);
    EXPECT_FALSE(store->fileExists(Url::file("/bilder/.bildkurier-tmp")));
}

TEST_F(ImportModelResumeTest, WaitsForTheFileThatIsOnItsWayByWhateverPathALinkGives) {
    const auto slow = std::make_shared<SlowMoves>(std::make_shared<LinkedFolder>(store));
    files = slow;
    start();
    const auto lost = plugIn("1", std::nullopt, three, 0);
    slow->meanwhile = [&] {
        unplug(lost);
        plugIn("2", std::nullopt, three);
        model->setDest(Url::file("/link"));
        EXPECT_EQ(model->status(), "Prüfe Zielordner …");
        loop.settle();
        EXPECT_EQ(model->phase(), Phase::checking);
        EXPECT_EQ(model->status(),
                  "Warte auf die Datei, die beim Abbruch des Imports noch unterwegs war …");
    };
    startImport();
    fileOf(*lost, 0).deliver();
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->newFiles().size(), 2U) << "it has arrived after all";
}

TEST_F(ImportModelResumeTest, KeepsTheSummaryOnShowWhileARunToAnotherDestinationComesToRest) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    start();
    const auto lost = plugIn("1", std::nullopt, three, 0);
    bool imported = false;
    slow->meanwhile = [&] {
        unplug(lost);
        plugIn("2", std::nullopt, three);
        model->setDest(Url::file("/archiv"));
        loop.settle();
        ASSERT_EQ(model->newFiles().size(), 3U);
        record();
        model->startImport();
        loop.settle();
        imported = true;
        ASSERT_GE(statuses.size(), 2U);
        EXPECT_TRUE(statuses.end()[-2].starts_with("Fertig: 3 geladen")) << statuses.end()[-2];
        EXPECT_EQ(statuses.back(), nothingNew);
    };
    startImport();
    fileOf(*lost, 0).deliver();
    loop.settle();
    EXPECT_TRUE(imported);
}

TEST_F(ImportModelResumeTest, FindsOutNothingOfADestinationWhileItReadsTheCameraAgain) {
    const auto slow = std::make_shared<SlowMoves>(std::make_shared<LinkedFolder>(store));
    files = slow;
    start();
    const auto lost = plugIn("1", std::nullopt, three, 0);
    bool hung = false;
    slow->meanwhile = [&] {
        hung = true;
        unplug(lost);
        plugIn("2", std::nullopt, three);
        model->setDest(Url::file("/link"));
        model->reload();
        loop.settle();
        EXPECT_EQ(model->status(), "Lese Kamera neu ein …");
    };
    startImport();
    fileOf(*lost, 0).deliver();
    loop.settle();
    EXPECT_TRUE(hung);
    EXPECT_EQ(model->status(), "Lese Kamera neu ein …");
}

TEST_F(ImportModelResumeTest, ImportsIntoAnotherDestinationWhileAFileIsStillOnItsWay) {
    const auto slow = std::make_shared<SlowMoves>(store);
    files = slow;
    start();
    const auto lost = plugIn("1", std::nullopt, three, 0);
    slow->meanwhile = [&] {
        unplug(lost);
        plugIn("2", std::nullopt, three);
        EXPECT_EQ(model->phase(), Phase::checking);
        model->setDest(Url::file("/archiv"));
        loop.settle();
        EXPECT_EQ(model->phase(), Phase::ready);
        startImport();
        EXPECT_EQ(std::ssize(store->tree(Url::file("/archiv"))), 4);
        EXPECT_TRUE(lock->held) << "the other file is still on its way";
        EXPECT_EQ(model->stagingDirectories(), std::vector{Url::file("/bilder/.bildkurier-tmp")});
    };
    startImport();
    fileOf(*lost, 0).deliver();
    loop.settle();
    EXPECT_FALSE(lock->held);
    EXPECT_TRUE(model->isSettled());
    EXPECT_EQ(model->phase(), Phase::ready);
}

TEST_F(ImportModelResumeTest, LeavesNoStagingFolderWhenTheCameraStaysAway) {
    start();
    const auto lost = plugIn("1", std::nullopt, three, 1);
    startImport();
    fileOf(*lost, 1).grow(3);
    ASSERT_TRUE(store->fileExists(Url::file("/bilder/.bildkurier-tmp/B.JPG")));
    model->cameraBrowserDidRemove(lost);
    EXPECT_TRUE(lock->held) << "the staging folder must not become another process's";
    EXPECT_FALSE(model->isSettled());
    loop.settle();
    EXPECT_EQ(model->status(), gaveUp);
    EXPECT_TRUE(model->isSettled());
    EXPECT_FALSE(lock->held);
    EXPECT_FALSE(store->fileExists(Url::file("/bilder/.bildkurier-tmp")));
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG"}));
}

TEST_F(ImportModelResumeTest, DiscardsWhatTheAbandonedRunHadStaged) {
    start();
    const auto lost = plugIn("1", identity, three, 0);
    startImport();
    fileOf(*lost, 0).grow(3);
    ASSERT_EQ(store->files.at("/bilder/.bildkurier-tmp/A.JPG"), "Inh");
    unplug(lost);
    plugIn("2", identity, three);
    EXPECT_EQ(imported(), inTypeFolder(three));
    EXPECT_FALSE(store->fileExists(Url::file("/bilder/.bildkurier-tmp")));
}

TEST_F(ImportModelResumeTest, MeasuresTheSpeedOfTheResumedRunAnew) {
    start();
    const auto lost = plugIn("1", identity, three, 0);
    startImport();
    loop.advance(Duration(1));
    fileOf(*lost, 0).grow(8);
    loop.advance(Duration(1));
    ASSERT_GT(model->speed().peak, 0);
    const auto speed = model->speed();
    unplug(lost);
    loop.advance(Duration(60));
    EXPECT_EQ(model->speed(), speed);

    const auto back = plugIn("2", identity, three, 0);
    EXPECT_EQ(model->speed(), SpeedMeter::Reading());
    loop.advance(Duration(1));
    fileOf(*back, 0).grow(4);
    loop.advance(Duration(1));
    EXPECT_EQ(model->speed().average, 2);
}

}  // namespace
}  // namespace bildkurier
