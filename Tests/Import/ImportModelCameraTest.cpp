// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ImportModelWithTwoCameras.h"

#include <chrono>

namespace bildkurier {
namespace {

using namespace std::chrono;

class ImportModelCameraTest : public ImportModelWithTwoCameras {};

TEST_F(ImportModelCameraTest, SelectsTheFirstCameraAndKeepsTheChoice) {
    make();
    model->cameraBrowserDidAdd(attached);
    model->cameraBrowserDidAdd(other);
    EXPECT_EQ(model->cameras(), (std::vector<std::shared_ptr<Camera>>{attached, other}));
    EXPECT_EQ(model->selectedID(), "A");
    EXPECT_EQ(attached->opened, 1);
    EXPECT_EQ(other->opened, 0);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(model->status(), "Verbinde mit Kamera A …");
}

TEST_F(ImportModelCameraTest, KeepsEvenAChoiceThatIsNotAttached) {
    make();
    model->setSelectedID("X");
    model->cameraBrowserDidAdd(attached);
    EXPECT_EQ(model->selectedID(), "X");
    EXPECT_EQ(attached->opened, 0);
}

TEST_F(ImportModelCameraTest, NamesTheCameraAsPeopleCanReadIt) {
    const struct {
        std::optional<std::string> name;
        std::string status;
    } cases[] = {
        {"EOS R5", "Verbinde mit EOS R5 …"},
        {std::nullopt, "Verbinde mit Kamera …"},
        {"Böse\nZeile", "Verbinde mit Böse␊Zeile …"},
    };
    for (const auto& [name, status] : cases) {
        make();
        attached->deviceName = name;
        model->cameraBrowserDidAdd(attached);
        EXPECT_EQ(model->status(), status);
    }
}

TEST_F(ImportModelCameraTest, SwitchesToTheTrustedCamera) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:1";
    other->deviceIdentity = "serial:1";
    make();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(model->status(), "Verbinde mit Kamera B …");
}

TEST_F(ImportModelCameraTest, SwitchesToTheCameraThatItWaitsFor) {
    make();
    attached->deviceIdentity = "serial:1";
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    connect(attached);
    model->startImport();
    loop.settle();
    model->cameraBrowserDidRemove(attached);
    connect(other);
    const auto returned = camera("C", "serial:1");
    record();
    model->cameraBrowserDidAdd(returned);
    EXPECT_EQ(model->selectedID(), "C");
    EXPECT_EQ(statuses, (Statuses{noFiles, "Kamera C wieder verbunden. Import wird fortgesetzt …",
                                  "Verbinde mit Kamera C …"}));
}

TEST_F(ImportModelCameraTest, LetsGoOfTheFormerCamera) {
    make();
    file(*attached, "A.JPG", "aaaa", noon(2024y / May / 9));
    connect(attached);
    model->cameraBrowserDidAdd(other);
    model->setSelectedID("B");
    EXPECT_EQ(attached->closed, 1);
    EXPECT_EQ(attached->delegate.lock(), nullptr);
    EXPECT_EQ(other->opened, 1);
    EXPECT_EQ(other->delegate.lock(), model);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_TRUE(model->newFiles().empty());
    EXPECT_EQ(model->newBytes(), 0);
    EXPECT_EQ(model->cameraFileCount(), 0);
    EXPECT_EQ(model->cameraBytes(), 0);
    EXPECT_TRUE(model->cameraDays().empty());
}

TEST_F(ImportModelCameraTest, SearchesWhenNoAttachedCameraIsSelected) {
    for (const std::optional<std::string>& id : {std::optional<std::string>("X"), {}}) {
        make();
        connect(attached);
        model->setSelectedID(id);
        EXPECT_EQ(model->phase(), Phase::noCamera);
        EXPECT_EQ(model->status(), searching);
        EXPECT_EQ(attached->delegate.lock(), nullptr);
    }
}

TEST_F(ImportModelCameraTest, TakesTheFirstCameraOfAnId) {
    make();
    const auto twin = camera("A");
    model->cameraBrowserDidAdd(attached);
    model->cameraBrowserDidAdd(twin);
    model->setSelectedID(std::nullopt);
    model->setSelectedID("A");
    EXPECT_EQ(attached->opened, 2);
    EXPECT_EQ(twin->opened, 0);
}

TEST_F(ImportModelCameraTest, DoesNothingWhenTheSameCameraIsSelectedAgain) {
    make();
    connect(attached);
    model->setSelectedID("A");
    EXPECT_EQ(attached->opened, 1);
    EXPECT_EQ(attached->closed, 0);
}

TEST_F(ImportModelCameraTest, KeepsItsCameraWhileImporting) {
    make();
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    connect(attached);
    model->startImport();
    model->cameraBrowserDidAdd(other);
    model->setSelectedID("B");
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(other->opened, 0);
    EXPECT_EQ(attached->closed, 0);
    EXPECT_EQ(model->phase(), Phase::importing);
}

TEST_F(ImportModelCameraTest, ForgetsACameraThatIsNotSelected) {
    make();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    record();
    model->cameraBrowserDidRemove(other);
    EXPECT_EQ(model->cameras(), (std::vector<std::shared_ptr<Camera>>{attached}));
    EXPECT_EQ(model->selectedID(), "A");
    EXPECT_EQ(phases, (Phases{Phase::ready}));
}

TEST_F(ImportModelCameraTest, TurnsToTheNextCameraWhenItsOwnIsRemoved) {
    make();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    model->cameraBrowserDidRemove(attached);
    EXPECT_EQ(model->selectedID(), "B");
    EXPECT_EQ(model->status(), "Verbinde mit Kamera B …");
    model->cameraBrowserDidRemove(other);
    EXPECT_EQ(model->selectedID(), std::nullopt);
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->status(), searching);
    EXPECT_TRUE(model->log().empty());
}

TEST_F(ImportModelCameraTest, ReadsTheListOnceTheSessionIsOpen) {
    make();
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    EXPECT_EQ(model->phase(), Phase::reading);
    EXPECT_EQ(model->status(), readingList);
}

TEST_F(ImportModelCameraTest, SaysWhyASessionFailedAndTriesAgainWhenTheCameraIsChosenAgain) {
    make();
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened(Error{"Das Gerät ist belegt"});
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->status(),
              "Verbindung fehlgeschlagen: Das Gerät ist belegt. „Digitale Bilder“, „Fotos“ und "
              "Canon-Software schließen, dann Kamera neu verbinden.");
    EXPECT_EQ(model->cameras().size(), 1);
    model->setSelectedID(std::nullopt);
    model->setSelectedID("A");
    EXPECT_EQ(attached->opened, 2);
    EXPECT_EQ(model->phase(), Phase::connecting);
}

TEST_F(ImportModelCameraTest, IgnoresCamerasThatItDoesNotHold) {
    make();
    fillFiveDays();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    record();
    model->cameraDidOpenSession(*other, std::nullopt);
    model->cameraDidOpenSession(*other, Error{"Das Gerät ist belegt"});
    model->cameraCatalogReady(*other);
    model->cameraCatalogChanged(*other);
    EXPECT_EQ(phases, (Phases{Phase::ready}));
    EXPECT_EQ(model->cameraFileCount(), 5);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelCameraTest, GoesFromConnectingToReady) {
    make();
    file(*attached, "A.JPG", "aaaa");
    record();
    connect(attached);
    EXPECT_EQ(phases, (Phases{Phase::noCamera, Phase::connecting, Phase::reading, Phase::ready,
                              Phase::checking, Phase::ready}));
    EXPECT_EQ(statuses, (Statuses{searching, "Verbinde mit Kamera A …", readingList, checkingDest,
                                  "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import."}));
}

TEST_F(ImportModelCameraTest, ReopensTheCameraAfterASecond) {
    make();
    connect(attached);
    model->reload();
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(model->status(), readingAgain);
    EXPECT_EQ(attached->closed, 1);
    file(*attached, "A.JPG", "aaaa");
    loop.advance(999ms);
    EXPECT_EQ(attached->opened, 1);
    loop.advance(1ms);
    EXPECT_EQ(attached->opened, 2);
    deliver(*attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->cameraFileCount(), 1);
}

TEST_F(ImportModelCameraTest, ReadsAgainInEveryPhaseWithACamera) {
    make();
    file(*attached, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(attached);
    for (const Phase phase : {Phase::connecting, Phase::reading, Phase::checking, Phase::ready}) {
        EXPECT_EQ(model->phase(), phase);
        model->reload();
        EXPECT_EQ(model->phase(), Phase::connecting);
        EXPECT_EQ(model->status(), readingAgain);
        loop.advance(1s);
        if (phase >= Phase::connecting) attached->sessionOpened();
        if (phase >= Phase::reading) attached->catalogReady();
        if (phase >= Phase::checking) loop.settle();
    }
}

TEST_F(ImportModelCameraTest, KeepsReopeningWhenAScanEndsMeanwhile) {
    make();
    file(*attached, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    model->reload();
    record();
    loop.settle();
    EXPECT_EQ(phases, (Phases{Phase::connecting}));
    EXPECT_EQ(statuses, (Statuses{readingAgain}));
}

TEST_F(ImportModelCameraTest, DoesNotReopenACameraThatItNoLongerHolds) {
    make();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    model->reload();
    model->setSelectedID("B");
    loop.advance(1s);
    EXPECT_EQ(attached->opened, 1);
    EXPECT_EQ(other->opened, 1);
}

TEST_F(ImportModelCameraTest, ReopensNoCameraThatItHasTurnedToAgain) {
    make();
    connect(attached);
    model->cameraBrowserDidAdd(other);
    model->reload();
    model->setSelectedID("B");
    model->setSelectedID("A");
    EXPECT_EQ(attached->opened, 2);
    loop.advance(1s);
    EXPECT_EQ(attached->opened, 2);
}

TEST_F(ImportModelCameraTest, DoesNotReopenACameraThatIsBeingImported) {
    make();
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    connect(attached);
    model->reload();
    attached->catalogReady();  // on its way when the session was closed
    loop.settle();
    model->startImport();
    ASSERT_EQ(model->phase(), Phase::importing);
    loop.advance(1s);
    EXPECT_EQ(attached->opened, 1);
}

TEST_F(ImportModelCameraTest, ReopensOnceASecondAfterTheLastReload) {
    make();
    connect(attached);
    model->reload();
    loop.advance(500ms);
    model->reload();
    loop.advance(999ms);
    EXPECT_EQ(attached->opened, 1);
    loop.advance(1ms);
    EXPECT_EQ(attached->opened, 2);
    loop.advance(10s);
    EXPECT_EQ(attached->opened, 2);
}

TEST_F(ImportModelCameraTest, DoesNotReadTheCameraAgainWhileImportingOrWithoutCamera) {
    make();
    model->reload();
    EXPECT_EQ(model->status(), searching);
    EXPECT_EQ(loop.timers(), 0);
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    connect(attached);
    model->startImport();
    model->reload();
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(attached->closed, 0);
}

TEST_F(ImportModelCameraTest, TakesUpTheGrantAgain) {
    const Url same = Url::file("/bilder");
    const Url moved = Url::file("/verschoben");
    const struct {
        std::optional<Url> restorable;
        bool restoreGrants;
        Url dest;
    } cases[] = {
        {std::nullopt, false, same},
        {moved, false, same},
        {moved, true, moved},
        {same, true, same},
    };
    file(*attached, "A.JPG", "aaaa");
    for (const auto& [restorable, restoreGrants, dest] : cases) {
        access = std::make_shared<FakeFolderAccess>();
        access->granted = false;
        settings->storedDestination = same;
        make();
        connect(attached);
        EXPECT_EQ(model->status(), chooseFolder);
        access->restorable = restorable;
        access->restoreGrants = restoreGrants;
        model->reload();
        EXPECT_EQ(loop.backgroundTasks(), dest == same ? 0 : 1);
        EXPECT_EQ(model->dest(), dest);
        EXPECT_EQ(settings->storedDestination, dest);
        EXPECT_EQ(model->status(), readingAgain);
        loop.advance(1s);
        deliver(*attached);
        EXPECT_EQ(model->status() == chooseFolder, !restoreGrants);
    }
}

TEST_F(ImportModelCameraTest, LeavesAGrantedFolderAloneWhenReadingAgain) {
    make();
    access->restorable = Url::file("/verschoben");
    model->reload();
    EXPECT_EQ(model->dest(), Url::file("/bilder"));
    EXPECT_EQ(settings->storedDestination, Url::file("/bilder"));
}

}  // namespace
}  // namespace bildkurier
