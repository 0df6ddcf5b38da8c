// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ImportModelWithTwoCameras.h"
#include "RecordingFileStore.h"

#include <chrono>

namespace bildkurier {
namespace {

using namespace std::chrono;

class ImportModelScanTest : public ImportModelWithTwoCameras {};

TEST_F(ImportModelScanTest, AsksTheDestinationInTheBackground) {
    const auto recording = std::make_shared<RecordingFileStore>(store);
    files = recording;
    store->folders.insert("/bilder");
    store->files["/bilder/JPG/a.jpg"] = "aaaa";
    store->isNetwork = true;
    make();
    file(*attached, "A.JPG", "aaaa");
    file(*attached, "B.JPG", "bb");
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    EXPECT_EQ(model->phase(), Phase::checking);
    EXPECT_EQ(model->status(), checkingDest);
    EXPECT_EQ(recording->calls, Names());
    EXPECT_TRUE(loop.stepBackground());
    EXPECT_EQ(recording->calls, (Names{"isNetworkVolume /bilder", "isWritableDirectory /bilder",
                                       "availableCapacity /bilder", "listing /bilder"}));
    EXPECT_EQ(model->phase(), Phase::checking);
    EXPECT_FALSE(model->destOnNetwork());
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_TRUE(model->destOnNetwork());
    EXPECT_EQ(newNames(), (Names{"B.JPG"}));
}

TEST_F(ImportModelScanTest, TakesADestinationThatTellsNothingForEmpty) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    EXPECT_EQ(newNames(), (Names{"A.JPG"}));
    EXPECT_FALSE(model->destOnNetwork());
}

TEST_F(ImportModelScanTest, LoadsNothingIntoADestinationThatOverlapsWithTheCard) {
    store->files["/bilder/A.JPG"] = "aaaa";
    make();
    attached->folder = Url::file("/bilder");
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    const std::string advice =
        "Karte und Zielordner liegen ineinander; bitte einen anderen Zielordner wählen.";
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), advice);
    EXPECT_TRUE(model->destOverlaps());
    EXPECT_EQ(newNames(), (Names{"A.JPG"})) << "it has not been imported";
    const auto before = store->tree(Url::file("/"));
    model->setUseFromDate(true);
    model->setUseFromDate(false);
    EXPECT_EQ(model->status(), advice);
    model->startImport();
    loop.settle();
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), advice);
    EXPECT_EQ(store->tree(Url::file("/")), before);
    EXPECT_FALSE(lock->held);

    model->setDest(Url::file("/ziel"));
    loop.settle();
    EXPECT_FALSE(model->destOverlaps());
    model->startImport();
    loop.settle();
    EXPECT_EQ(store->tree(Url::file("/ziel")), (Tree{{"JPG/", ""}, {"JPG/A.JPG", "aaaa"}}));
}

TEST_F(ImportModelScanTest, ForgetsTheOverlapOfAFolderThatMustBeChosenAgain) {
    make();
    attached->folder = Url::file("/bilder");
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    access->granted = false;
    model->setDest(Url::file("/ziel"));
    EXPECT_FALSE(model->destOverlaps());
    EXPECT_EQ(model->status(), chooseFolder);
}

TEST_F(ImportModelScanTest, LeavesNoFileOutThatOnlySeemsToHaveArrivedSince) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder/JPG")));
    store->files["/bilder/JPG/A.JPG"] = "bbbb";
    model->startImport();
    loop.settle();
    EXPECT_EQ(store->tree(Url::file("/bilder")),
              (Tree{{"JPG/", ""}, {"JPG/A.JPG", "bbbb"}, {"JPG/A_1.JPG", "aaaa"}}));
    EXPECT_EQ(model->log().back(), "Fertig: 1 geladen (" + formatBytes(4) + ")");
}

TEST_F(ImportModelScanTest, TakesNoFolderThatCouldNotBeReadForImportedOrForAnother) {
    make();
    store->files["/bilder/clip"] = "";
    for (const char* name : {"CLIP", "CLIP", "CLIP.JPG", "CLIP.JPG"})
        file(*attached, name, "")->knownObstacle = Error{"Nicht lesbar"};
    file(*attached, "CLIP", "");
    file(*attached, "CLIP.JPG", "");
    connect(attached);
    EXPECT_EQ(newNames(), (Names{"CLIP", "CLIP", "CLIP.JPG", "CLIP.JPG", "CLIP.JPG"}));
}

TEST_F(ImportModelScanTest, DropsAnOlderScan) {
    store->isNetwork = true;
    store->files["/voll/A.JPG"] = "aaaa";
    store->folders.insert("/voll");
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    model->setDest(Url::file("/voll"));
    model->setDest(Url::file("/leer"));
    record();
    EXPECT_TRUE(loop.stepBackground());
    EXPECT_TRUE(loop.stepMain());
    EXPECT_EQ(phases, (Phases{Phase::checking}));
    EXPECT_FALSE(model->destOnNetwork());
    loop.settle();
    EXPECT_EQ(phases, (Phases{Phase::checking, Phase::ready}));
    EXPECT_EQ(newNames(), (Names{"A.JPG"}));
}

TEST_F(ImportModelScanTest, DropsTheScanForAnotherCamera) {
    make();
    file(*attached, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    model->cameraBrowserDidAdd(other);
    model->setSelectedID("B");
    record();
    loop.settle();
    EXPECT_EQ(phases, (Phases{Phase::connecting}));
    EXPECT_EQ(statuses, (Statuses{"Verbinde mit Kamera B …"}));
}

TEST_F(ImportModelScanTest, ScansOnlyOnceACatalogueIsRead) {
    make();
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::noCamera);
    model->cameraBrowserDidAdd(attached);
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::connecting);
    attached->sessionOpened();
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::reading);
    EXPECT_EQ(loop.backgroundTasks(), 0);
    attached->sessionOpened(Error{"Das Gerät ist belegt"});
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelScanTest, ScansNothingWhileImportingOrReopening) {
    make();
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    connect(attached);
    model->startImport();
    loop.settle();
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->dest(), Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(loop.backgroundTasks(), 0);
    model->cameraBrowserDidRemove(attached);

    file(*other, "B.JPG", "bb");
    connect(other);
    model->reload();
    model->setDest(Url::file("/bilder"));
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelScanTest, AsksForTheFolderWhenItsGrantIsMissing) {
    const auto recording = std::make_shared<RecordingFileStore>(store);
    files = recording;
    store->folders.insert("/bilder");
    store->files["/bilder/5.JPG"] = "a";
    store->isNetwork = true;
    settings->storedUseFromDate = true;
    settings->storedFromDay = "2024-05-04";
    make();
    fillFiveDays();
    connect(attached);
    EXPECT_EQ(newNames(), (Names{"4.JPG"}));
    EXPECT_TRUE(model->destOnNetwork());

    access->granted = false;
    recording->calls.clear();
    record();
    model->setDest(model->dest());
    EXPECT_EQ(phases, (Phases{Phase::ready}));
    EXPECT_EQ(model->status(), chooseFolder);
    EXPECT_EQ(newNames(), (Names{"4.JPG", "5.JPG"}));
    EXPECT_FALSE(model->destOnNetwork());
    EXPECT_EQ(loop.backgroundTasks(), 0);
    EXPECT_EQ(recording->calls, Names());
}

TEST_F(ImportModelScanTest, DropsARunningScanWhenTheGrantIsLost) {
    store->files["/bilder/A.JPG"] = "aaaa";
    make();
    file(*attached, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    access->granted = false;
    model->setDest(model->dest());
    loop.settle();
    EXPECT_EQ(model->status(), chooseFolder);
    EXPECT_EQ(newNames(), (Names{"A.JPG"}));
}

TEST_F(ImportModelScanTest, ScansAServerWithoutGrant) {
    settings->storedKind = DestinationKind::sftp;
    settings->storedHost = "nas";
    access->granted = false;
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    EXPECT_EQ(model->status(), "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import.");
}

TEST_F(ImportModelScanTest, ScansOnceForAnEmptyCatalogue) {
    make();
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(loop.backgroundTasks(), 1);
    loop.settle();
    EXPECT_EQ(model->status(), noFiles);
}

TEST_F(ImportModelScanTest, ScansNothingWhenTheSessionFailed) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    model->reload();
    loop.advance(1s);
    attached->sessionOpened();
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::reading);
    attached->sessionOpened(Error{"Das Gerät ist belegt"});
    model->setDest(Url::file("/ziel"));
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelScanTest, TakesAFolderWithoutGrantForNotWritable) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:2";
    store->folders.insert("/bilder");
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    access->granted = false;
    other->deviceIdentity = "serial:2";
    file(*other, "B.JPG", "bb");
    connect(other);
    EXPECT_EQ(model->status(), chooseFolder);
    EXPECT_EQ(model->log().back(),
              "✗ Auto-Import ausgesetzt: Zielordner fehlt oder ist nicht beschreibbar. "
              "Ziel: /bilder");
}

}  // namespace
}  // namespace bildkurier
