// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PluggedCameraTest.h"

#include <functional>

namespace bildkurier {
namespace {

using Phase = ImportModel::Phase;
using namespace std::string_literals;

class ImportModelAutoImportTest : public PluggedCameraTest {
protected:
    static constexpr auto allPresent =
        "Auto-Import: alle Dateien dieser Kamera sind bereits im Zielordner.";
    static constexpr auto notWritable =
        "Auto-Import ausgesetzt: Zielordner fehlt oder ist nicht beschreibbar.";
    static constexpr auto noRoom = "Auto-Import ausgesetzt: zu wenig freier Platz im Zielordner.";

    const std::string trusted = "serial:1";
    const Names two = {"A.JPG", "B.JPG"};

    void startTrusting() {
        settings->storedAutoImport = true;
        settings->storedIdentity = trusted;
        settings->storedName = "EOS R5";
        start();
    }

    static std::string began(std::size_t files, const std::string& range) {
        return "↻ Auto-Import: " + std::to_string(files) + " fehlende Dateien " + range +
               ", Kamera EOS R5.";
    }

    static constexpr auto undated = "für Dateien ohne Aufnahmedatum";
};

TEST_F(ImportModelAutoImportTest, TrustsTheCameraHeldWhenSwitchedOn) {
    start();
    const auto attached = holding("1", trusted, two);
    attached->deviceName = "EOS R5";
    connect(attached);
    model->setAutoImportEnabled(true);
    EXPECT_EQ(model->status(),
              "Auto-Import für EOS R5 aktiviert. Er startet beim nächsten Verbinden.");
    EXPECT_TRUE(model->autoImportEnabled());
    EXPECT_TRUE(settings->storedAutoImport);
    EXPECT_EQ(settings->storedIdentity, trusted);
    EXPECT_EQ(settings->storedName, "EOS R5");
}

TEST_F(ImportModelAutoImportTest, StartsNothingBySwitchingOn) {
    start();
    const auto attached = plugIn("1", trusted, two);
    model->setAutoImportEnabled(true);
    loop.settle();
    model->setUseFromDate(true);
    model->setDest(model->dest());
    loop.settle();
    model->reload();
    loop.advance(Duration(1));
    deliver(*attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());

    unplug(attached);
    plugIn("2", trusted, two);
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, CallsACameraWithoutNameKamera) {
    start();
    const auto attached = holding("1", trusted, two);
    attached->deviceName.reset();
    connect(attached);
    model->setAutoImportEnabled(true);
    EXPECT_EQ(model->status(),
              "Auto-Import für Kamera aktiviert. Er startet beim nächsten Verbinden.");
    EXPECT_EQ(settings->storedName, "Kamera");
}

TEST_F(ImportModelAutoImportTest, SwitchesItselfOffWhenThereIsNobodyToTrust) {
    const auto nobody = [] {};
    const auto unknown = [this] { plugIn("1", std::nullopt, two); };
    for (const std::function<void()>& attach :
         {std::function<void()>(nobody), std::function<void()>(unknown)}) {
        settings->storedAutoImport = false;
        start();
        attach();
        const std::string status = model->status();
        model->setAutoImportEnabled(true);
        EXPECT_FALSE(model->autoImportEnabled());
        EXPECT_FALSE(settings->storedAutoImport);
        EXPECT_EQ(settings->storedIdentity, std::nullopt);
        EXPECT_EQ(settings->storedName, std::nullopt);
        EXPECT_EQ(model->status(), status);
        EXPECT_FALSE(
            showed("Auto-Import für Kamera 1 aktiviert. Er startet beim nächsten "
                   "Verbinden."));
    }
}

TEST_F(ImportModelAutoImportTest, TakesTheSwitchFromTheSettings) {
    start();
    EXPECT_FALSE(model->autoImportEnabled());
    startTrusting();
    EXPECT_TRUE(model->autoImportEnabled());
}

TEST_F(ImportModelAutoImportTest, KeepsTheTrustedCameraWhenSwitchedOff) {
    startTrusting();
    model->setAutoImportEnabled(false);
    EXPECT_FALSE(model->autoImportEnabled());
    EXPECT_FALSE(settings->storedAutoImport);
    EXPECT_EQ(settings->storedIdentity, trusted);
    EXPECT_EQ(settings->storedName, "EOS R5");
    plugIn("1", trusted, two);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, TrustsTheOtherCameraWhenSwitchedOffAndOnAgain) {
    const auto offAndOn = [this] {
        model->setAutoImportEnabled(false);
        model->setAutoImportEnabled(true);
    };
    const auto onAgain = [this] { model->setAutoImportEnabled(true); };
    for (const std::function<void()>& change :
         {std::function<void()>(offAndOn), std::function<void()>(onAgain)}) {
        store->removeItem(settings->storedDestination);
        startTrusting();
        const auto other = plugIn("B", "serial:2", {"X.JPG"});
        change();
        EXPECT_EQ(model->status(),
                  "Auto-Import für Kamera B aktiviert. Er startet beim nächsten Verbinden.");
        EXPECT_EQ(settings->storedIdentity, "serial:2");
        unplug(other);
        unplug(plugIn("1", trusted, two));
        EXPECT_EQ(imported(), Tree());
        plugIn("B", "serial:2", {"X.JPG"});
        EXPECT_EQ(imported(), inTypeFolder({"X.JPG"}));
    }
}

TEST_F(ImportModelAutoImportTest, ForgetsThePendingImportWhenSwitchedOff) {
    startTrusting();
    const auto attached = holding("1", trusted, two);
    model->cameraBrowserDidAdd(attached);
    model->setAutoImportEnabled(false);
    model->setAutoImportEnabled(true);
    deliver(*attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, ImportsTheTrustedCameraWhenItIsConnected) {
    startTrusting();
    model->addLog("von gestern");
    const auto attached = holding("1", trusted, two);
    fileOf(*attached, 0).shot = loop.date();
    connect(attached);
    const auto bytes = std::ssize(contentsOf("A.JPG")) + std::ssize(contentsOf("B.JPG"));
    EXPECT_EQ(model->log(),
              (Log{began(2, "ab dem ersten fehlenden Aufnahmetag 2024-05-09"), loaded("B.JPG"),
                   loaded("A.JPG"), "Fertig: 2 geladen (" + formatBytes(bytes) + ")"}));
    EXPECT_EQ(imported(), inTypeFolder(two));
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_EQ(sleepBlocker->begun, 1);
    EXPECT_EQ(sleepBlocker->reason, std::nullopt);
}

TEST_F(ImportModelAutoImportTest, SaysFromWhichDayFilesAreMissing) {
    const std::chrono::days day(1);
    const struct {
        std::vector<std::optional<Date>> shots;
        Names present;
        std::string range;
    } cases[] = {
        {{{}, {}}, {}, undated},
        {{{}, loop.date()}, {}, "ab dem ersten fehlenden Aufnahmetag 2024-05-09"},
        {{loop.date(), loop.date() - day}, {}, "ab dem ersten fehlenden Aufnahmetag 2024-05-08"},
        {{loop.date() + day, loop.date() + 2 * day},
         {},
         "ab dem ersten fehlenden Aufnahmetag 2024-05-10"},
        {{loop.date() - day, loop.date()},
         {"A.JPG"},
         "ab dem ersten fehlenden Aufnahmetag 2024-05-09"},
        {{loop.date(), {}}, {"A.JPG"}, undated},
    };
    for (const auto& [shots, present, range] : cases) {
        SCOPED_TRACE(range);
        store->removeItem(settings->storedDestination);
        startTrusting();
        for (const auto& name : present) store->files["/bilder/" + name] = contentsOf(name);
        const auto attached = holding("1", trusted, two);
        for (std::size_t index = 0; index < 2; ++index)
            fileOf(*attached, index).shot = shots[index];
        connect(attached);
        EXPECT_EQ(model->log().front(), began(2 - present.size(), range));
    }
}

TEST_F(ImportModelAutoImportTest, IgnoresTheDateFilter) {
    settings->storedUseFromDate = true;
    startTrusting();
    const auto attached = holding("1", trusted, {"A.JPG", "B.JPG", "C.JPG"}, 0);
    fileOf(*attached, 1).shot = loop.date() - std::chrono::days(7);
    fileOf(*attached, 2).shot = loop.date();
    connect(attached);
    ASSERT_TRUE(isImporting());
    EXPECT_EQ(model->fromDayIndex(), 1);
    EXPECT_EQ(newNames(), (Names{"A.JPG", "B.JPG", "C.JPG"}));
    EXPECT_EQ(model->newBytes(), model->cameraBytes());
    EXPECT_EQ(model->log(), Log{began(3, "ab dem ersten fehlenden Aufnahmetag 2024-05-02")});
}

TEST_F(ImportModelAutoImportTest, SaysSoWhenEverythingIsThere) {
    startTrusting();
    model->addLog("von gestern");
    for (const auto& name : two) store->files["/bilder/" + name] = contentsOf(name);
    plugIn("1", trusted, two);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), allPresent);
    EXPECT_EQ(model->log(), Log{"von gestern"});
    EXPECT_EQ(sleepBlocker->begun, 0);
}

TEST_F(ImportModelAutoImportTest, SuspendsItselfWhenTheDestinationWillNotDo) {
    const std::int64_t bytes = std::ssize(contentsOf("A.JPG")) + std::ssize(contentsOf("B.JPG"));
    const auto missing = [this] { store->removeItem(Url::file("/bilder")); };
    const auto tooSmall = [this, bytes] { store->capacity = bytes - 1; };
    const auto both = [this] {
        store->removeItem(Url::file("/bilder"));
        store->capacity = 0;
    };
    const struct {
        std::function<void()> obstacle;
        std::string status;
    } cases[] = {{missing, notWritable}, {tooSmall, noRoom}, {both, notWritable}};
    for (const auto& [obstacle, status] : cases) {
        startTrusting();
        model->addLog("von gestern");
        obstacle();
        const auto attached = plugIn("1", trusted, two);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(model->status(), status);
        EXPECT_EQ(model->log(), (Log{"von gestern", "✗ " + status + " Ziel: /bilder"}));
        EXPECT_EQ(newNames(), two);
        EXPECT_EQ(fileOf(*attached, 0).downloads, 0);
        EXPECT_EQ(sleepBlocker->reason, std::nullopt);

        store->capacity = 1'000'000'000;
        ASSERT_TRUE(store->createDirectory(settings->storedDestination));
        model->setDest(model->dest());
        loop.settle();
        EXPECT_EQ(model->phase(), Phase::ready) << "not retried until it is connected again";
        EXPECT_EQ(fileOf(*attached, 0).downloads, 0);
        unplug(attached);
        plugIn("2", trusted, two);
        EXPECT_EQ(imported(), inTypeFolder(two));
        store->removeItem(Url::file("/bilder/JPG"));
    }
}

TEST_F(ImportModelAutoImportTest, NamesAnSftpDestinationByItsPath) {
    settings->storedKind = DestinationKind::sftp;
    settings->storedHost = "nas";
    settings->storedPath = "/fo\nto";
    startTrusting();
    plugIn("1", trusted, two);
    EXPECT_EQ(model->log(), Log{"✗ "s + notWritable + " Ziel: /fo␊to"});
}

TEST_F(ImportModelAutoImportTest, IsContentWithUnknownRoom) {
    startTrusting();
    store->capacity.reset();
    plugIn("1", trusted, two);
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, LogsNothingOfItsOwnWhenTheStartFails) {
    startTrusting();
    model->addLog("von gestern");
    store->capacity = std::ssize(contentsOf("A.JPG")) + std::ssize(contentsOf("B.JPG"));
    store->files["/bilder/B.JPG"] = contentsOf("B.JPG");
    plugIn("1", trusted, two);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(),
              "Kann Zielordner nicht beschreiben: Zu wenig Platz für die größte Datei (" +
                  formatBytes(std::ssize(contentsOf("A.JPG"))) + " nötig, " +
                  formatBytes(*store->capacity) + " frei).");
    EXPECT_EQ(model->log(), Log());
    EXPECT_EQ(newNames(), Names{"A.JPG"});
    EXPECT_EQ(sleepBlocker->begun, 0);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelAutoImportTest, AsksForTheFolderWhenItsPermissionIsMissing) {
    startTrusting();
    access->granted = false;
    plugIn("1", trusted, two);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), ImportModel::chooseFolderStatus);
    EXPECT_EQ(model->log(), Log{"✗ "s + notWritable + " Ziel: /bilder"});
    access->granted = true;
    model->setDest(model->dest());
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, DecidesOnceForEachConnection) {
    startTrusting();
    for (const auto& name : two) store->files["/bilder/" + name] = contentsOf(name);
    const auto attached = plugIn("1", trusted, two);
    ASSERT_EQ(model->status(), allPresent);
    store->removeItem(Url::file("/bilder/A.JPG"));
    model->setDest(model->dest());
    loop.settle();
    model->setUseFromDate(true);
    model->setUseFromDate(false);
    attached->catalogChanged();
    loop.advance(Duration(1.5));
    model->reload();
    loop.advance(Duration(1));
    deliver(*attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(newNames(), Names{"A.JPG"});
    EXPECT_EQ(fileOf(*attached, 0).downloads, 0);
}

TEST_F(ImportModelAutoImportTest, WaitsUntilTheCameraReportsFiles) {
    startTrusting();
    const auto attached = plugIn("1", trusted, {});
    EXPECT_EQ(model->status(), "Die Kamera meldet keine Dateien.");
    for (const auto& name : two) {
        file(*attached, name, contentsOf(name),
             loop.date() + std::chrono::days(std::ssize(attached->catalogue)));
    }
    // What is there by now counts, not what was there when the card was still empty.
    store->files["/bilder/A.JPG"] = contentsOf("A.JPG");
    attached->catalogChanged();
    loop.advance(Duration(1.5));
    EXPECT_EQ(model->log().front(), began(1, "ab dem ersten fehlenden Aufnahmetag 2024-05-10"));
    EXPECT_EQ(fileOf(*attached, 0).downloads, 0);
    EXPECT_EQ(imported(),
              (Tree{{"A.JPG", contentsOf("A.JPG")}, {"JPG/B.JPG", contentsOf("B.JPG")}}));
}

TEST_F(ImportModelAutoImportTest, ImportsACameraThatTurnsOutToBeTheTrustedOne) {
    startTrusting();
    plugIn("1", "serial:2", {"C.JPG"});
    const auto attached = holding("2", "persistent:usb", two);
    attached->identityIsFinal = false;
    model->cameraBrowserDidAdd(attached);
    loop.settle();
    EXPECT_EQ(attached->opened, 0);
    attached->deviceIdentity = trusted;
    attached->identityIsFinal = true;
    model->cameraBrowserDidIdentify(attached);
    deliver(*attached);
    EXPECT_EQ(attached->opened, 1);
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, ImportsTheCameraInHandThatTurnsOutToBeTheTrustedOne) {
    startTrusting();
    const auto attached = plugIn("1", "persistent:usb", two);
    EXPECT_EQ(model->phase(), Phase::ready);
    attached->deviceIdentity = trusted;
    model->cameraBrowserDidIdentify(attached);
    loop.settle();
    EXPECT_EQ(attached->opened, 1);
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, ImportsNoCameraThatMayTurnOutToBeAnother) {
    startTrusting();
    const auto attached = holding("1", trusted, two);
    attached->identityIsFinal = false;
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
    attached->identityIsFinal = true;
    model->cameraBrowserDidIdentify(attached);
    loop.settle();
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, TrustsNoIdentityThatMayChange) {
    start();
    const auto attached = holding("1", "persistent:usb", two);
    attached->deviceName = "EOS R5";
    attached->identityIsFinal = false;
    model->trustWhenConnected("EOS R5");
    connect(attached);
    model->setAutoImportEnabled(true);
    EXPECT_FALSE(model->autoImportEnabled());
    EXPECT_EQ(settings->storedIdentity, std::nullopt);
    attached->deviceIdentity = trusted;
    attached->identityIsFinal = true;
    model->cameraBrowserDidIdentify(attached);
    EXPECT_EQ(settings->storedIdentity, trusted);
}

TEST_F(ImportModelAutoImportTest, OnlySelectsACameraThatIsNotTrusted) {
    startTrusting();
    for (const auto& identity : {std::optional("serial:2"s), std::optional<std::string>()}) {
        const auto other = plugIn("B", identity, two);
        EXPECT_EQ(model->selectedID(), "B");
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(imported(), Tree());
        unplug(other);
    }
}

TEST_F(ImportModelAutoImportTest, SwitchesFromAnIdleCameraToTheTrustedOne) {
    startTrusting();
    const auto other = plugIn("B", "serial:2", {"X.JPG"});
    plugIn("1", trusted, two);
    EXPECT_EQ(model->selectedID(), "1");
    EXPECT_EQ(other->closed, 1);
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, ImportsTheTrustedCameraAfterTheRunDuringWhichItCame) {
    for (const bool chosenMeanwhile : {false, true}) {
        SCOPED_TRACE(chosenMeanwhile);
        store->removeItem(settings->storedDestination);
        startTrusting();
        const auto first = plugIn("B", "serial:2", {"X.JPG"}, 0);
        startImport();
        const auto waiting = holding("1", trusted, two);
        model->cameraBrowserDidAdd(waiting);
        EXPECT_TRUE(isImporting());
        EXPECT_EQ(model->selectedID(), "B");
        EXPECT_EQ(waiting->opened, 0);
        if (chosenMeanwhile) model->setSelectedID("1");
        statuses = {model->status()};

        fileOf(*first, 0).deliver();
        loop.settle();
        EXPECT_EQ(model->selectedID(), "1");
        EXPECT_EQ(model->phase(), Phase::connecting);
        EXPECT_EQ(model->status(), "Verbinde mit Kamera 1 …");
        EXPECT_EQ(statuses, (Names{"Lade 1 von 1: X.JPG", model->status()}));
        EXPECT_EQ(first->closed, 1);
        const auto bytes = formatBytes(std::ssize(contentsOf("X.JPG")));
        EXPECT_EQ(model->log(), (Log{loaded("X.JPG"), "Fertig: 1 geladen (" + bytes + ")"}));
        deliver(*waiting);
        EXPECT_EQ(model->log().front(), began(2, undated));
        EXPECT_EQ(imported(), inTypeFolder({"A.JPG", "B.JPG", "X.JPG"}));
    }
}

TEST_F(ImportModelAutoImportTest, DoesNotWaitForACameraThatIsGoneOrNotTrustedAnyMore) {
    const auto gone = [this](const auto& waiting) { unplug(waiting); };
    const auto off = [this](const auto&) { model->setAutoImportEnabled(false); };
    const std::function<void(const std::shared_ptr<FakeCamera>&)> cases[] = {gone, off};
    for (const auto& happens : cases) {
        store->removeItem(settings->storedDestination);
        startTrusting();
        const auto first = plugIn("B", "serial:2", {"X.JPG"}, 0);
        startImport();
        const auto waiting = holding("1", trusted, two);
        model->cameraBrowserDidAdd(waiting);
        happens(waiting);
        fileOf(*first, 0).deliver();
        loop.settle();
        EXPECT_EQ(model->selectedID(), "B");
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(model->status(), nothingNew);
        EXPECT_EQ(waiting->opened, 0);
    }
}

TEST_F(ImportModelAutoImportTest, ForgetsTheWaitingCameraWhenTheOneInHandIsLost) {
    startTrusting();
    const auto first = plugIn("B", "serial:2", {"X.JPG"}, 0);
    startImport();
    const auto waiting = holding("1", trusted, two);
    model->cameraBrowserDidAdd(waiting);
    unplug(first);
    EXPECT_EQ(model->selectedID(), "1");
    deliver(*waiting);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, LeavesARunThatWasInterruptedToItsResume) {
    startTrusting();
    const auto lost = plugIn("1", trusted, two, 1);
    ASSERT_TRUE(isImporting());
    unplug(lost);
    EXPECT_EQ(model->status(), goesOn);
    const auto back = plugIn("2", trusted, two);
    const auto bytes = formatBytes(std::ssize(contentsOf("B.JPG")));
    EXPECT_EQ(model->log(),
              (Log{began(2, undated), loaded("A.JPG"), disconnected(1, 2), continued(1),
                   loaded("B.JPG"), "Fertig: 1 geladen (" + bytes + ")"}));
    unplug(back);
    plugIn("3", trusted, two);
    EXPECT_EQ(model->status(), allPresent);
}

TEST_F(ImportModelAutoImportTest, IsNotHeldUpByAResumeThatWasGivenUpForAnotherRun) {
    startTrusting();
    const auto lost = plugIn("C", "serial:3", {"Y.JPG"}, 0);
    startImport();
    unplug(lost);
    const auto other = plugIn("B", "serial:2", {"X.JPG"}, 0);
    model->cameraBrowserDidAdd(holding("C2", "serial:3", {"Y.JPG"}));
    ASSERT_EQ(model->selectedID(), "C2");
    model->setSelectedID("B");
    deliver(*other);
    startImport();
    const auto waiting = holding("1", trusted, two);
    model->cameraBrowserDidAdd(waiting);
    fileOf(*other, 0).deliver();
    loop.settle();
    deliver(*waiting);
    EXPECT_EQ(imported(), inTypeFolder({"A.JPG", "B.JPG", "X.JPG"}));
}

TEST_F(ImportModelAutoImportTest, ImportsAgainAfterGivingUpOnAResume) {
    startTrusting();
    for (const auto* id : {"1", "2", "3"}) {
        const auto lost = plugIn(id, trusted, two, 0);
        ASSERT_TRUE(isImporting());
        unplug(lost);
    }
    EXPECT_EQ(model->status(), gaveUp);
    plugIn("4", trusted, two);
    EXPECT_EQ(model->log().front(), began(2, undated));
    EXPECT_EQ(imported(), inTypeFolder(two));
}

TEST_F(ImportModelAutoImportTest, WaitsUntilNoOtherProcessImports) {
    startTrusting();
    lock->takenByAnother = true;
    plugIn("1", trusted, two);
    const std::string waits = "↻ " + time() + " Auto-Import wartet: Es läuft schon ein Import.";
    EXPECT_EQ(model->log(), (Log{waits}));
    EXPECT_EQ(model->status(), "Es läuft schon ein Import.");
    loop.advance(Duration(3600));
    EXPECT_EQ(model->log(), (Log{waits})) << "once is enough";
    EXPECT_EQ(imported(), Tree());

    // The other process has loaded one of the two files.
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder/JPG")));
    store->files["/bilder/JPG/A.JPG"] = contentsOf("A.JPG");
    lock->takenByAnother = false;
    loop.advance(Duration(5));
    EXPECT_EQ(model->log().front(), began(1, undated));
    EXPECT_EQ(imported(), inTypeFolder(two));
    EXPECT_FALSE(lock->held);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelAutoImportTest, KeepsNoLockWhenItCannotStart) {
    startTrusting();
    const auto attached = holding("1", trusted, two);
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    access->granted = false;
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_FALSE(lock->held);
}

TEST_F(ImportModelAutoImportTest, NoLongerWaitsOnceItsCameraIsGoneOrItIsSwitchedOff) {
    const auto pull = [this](const std::shared_ptr<FakeCamera>& waiting) { unplug(waiting); };
    const auto switchOff = [this](const std::shared_ptr<FakeCamera>&) {
        model->setAutoImportEnabled(false);
    };
    using Action = std::function<void(const std::shared_ptr<FakeCamera>&)>;
    for (const Action& change : {Action(pull), Action(switchOff)}) {
        startTrusting();
        lock->takenByAnother = true;
        const auto waiting = plugIn("1", trusted, two);
        ASSERT_EQ(loop.timers(), 1);
        change(waiting);
        EXPECT_EQ(loop.timers(), 0);
        lock->takenByAnother = false;
        loop.advance(Duration(60));
        EXPECT_EQ(imported(), Tree());
        EXPECT_FALSE(lock->held);
    }
}

TEST_F(ImportModelAutoImportTest, NoLongerWaitsOnceTheUserStartsTheImport) {
    startTrusting();
    lock->takenByAnother = true;
    plugIn("1", trusted, two, 0);
    startImport();
    EXPECT_EQ(model->status(), "Es läuft schon ein Import.");
    lock->takenByAnother = false;
    startImport();
    ASSERT_TRUE(isImporting());
    EXPECT_EQ(loop.timers(), 2) << "for the speed and for the file";
}

TEST_F(ImportModelAutoImportTest, IsSuspendedWhenCardAndDestinationOverlap) {
    startTrusting();
    const auto attached = holding("1", trusted, two);
    attached->folder = settings->storedDestination;
    connect(attached);
    const std::string message =
        "Auto-Import ausgesetzt: Karte und Zielordner liegen ineinander; bitte einen anderen "
        "Zielordner wählen.";
    EXPECT_EQ(model->status(), message);
    EXPECT_EQ(model->log(), (Log{"✗ " + message + " Ziel: /bilder"}));
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, SaysThatItCannotTrustACameraWithoutIdentity) {
    start();
    model->trustWhenConnected("Kamera 1");
    plugIn("1", std::nullopt, two);
    EXPECT_EQ(model->log(), (Log{"✗ " + time() +
                                 " Kein Auto-Import: Kamera 1 hat keine Kennung, an der sie "
                                 "wiederzuerkennen wäre."}));
    EXPECT_FALSE(model->autoImportEnabled());
    EXPECT_FALSE(model->trustsCamera());
    EXPECT_EQ(imported(), Tree());
}

TEST_F(ImportModelAutoImportTest, TrustsACameraOnlyWhenItsIdentityIsStored) {
    start();
    EXPECT_FALSE(model->trustsCamera());
    settings->storedAutoImport = true;
    EXPECT_FALSE(model->trustsCamera()) << "nobody knows which";
    settings->storedIdentity = trusted;
    EXPECT_TRUE(model->trustsCamera());
    settings->storedAutoImport = false;
    EXPECT_FALSE(model->trustsCamera());
}

}  // namespace
}  // namespace bildkurier
