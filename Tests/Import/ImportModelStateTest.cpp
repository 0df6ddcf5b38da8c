// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportModelWithTwoCameras.h"

#include <chrono>

namespace bildkurier {
namespace {

using namespace std::chrono;

using Phase = ImportModel::Phase;

static_assert(Phase::noCamera < Phase::connecting && Phase::connecting < Phase::reading &&
              Phase::reading < Phase::checking && Phase::checking < Phase::ready &&
              Phase::ready < Phase::importing && Phase::importing < Phase::done);

class ImportModelStateTest : public ImportModelWithTwoCameras {};

TEST_F(ImportModelStateTest, BeginsWithNothing) {
    make();
    EXPECT_TRUE(model->cameras().empty());
    EXPECT_EQ(model->selectedID(), std::nullopt);
    EXPECT_EQ(model->dest(), Url::file("/bilder"));
    EXPECT_EQ(model->destinationKind(), DestinationKind::folder);
    EXPECT_EQ(model->sftpUser(), "");
    EXPECT_EQ(model->sftpHost(), "");
    EXPECT_EQ(model->sftpPath(), "");
    EXPECT_FALSE(model->byDate());
    EXPECT_TRUE(model->byType());
    EXPECT_TRUE(model->cameraDays().empty());
    EXPECT_FALSE(model->useFromDate());
    EXPECT_EQ(model->fromDayIndex(), 0);
    EXPECT_FALSE(model->autoImportEnabled());
    EXPECT_EQ(model->phase(), Phase::noCamera);
    EXPECT_EQ(model->status(), searching);
    EXPECT_EQ(model->cameraFileCount(), 0);
    EXPECT_EQ(model->cameraBytes(), 0);
    EXPECT_TRUE(model->newFiles().empty());
    EXPECT_EQ(model->newBytes(), 0);
    EXPECT_EQ(model->progress(), ImportRunner::Progress());
    EXPECT_EQ(model->speed(), SpeedMeter::Reading());
    EXPECT_FALSE(model->destOnNetwork());
    EXPECT_TRUE(model->log().empty());
    EXPECT_TRUE(model->newByType().empty());
    EXPECT_EQ(model->fromDaySelected(), std::nullopt);
    EXPECT_FALSE(model->destNeedsChoice());
    EXPECT_EQ(model->totalBytesProgress(), 0);
    EXPECT_EQ(loop.timers() + loop.mainTasks() + loop.backgroundTasks(), 0);
    EXPECT_EQ(sleepBlocker->begun, 0);
}

TEST_F(ImportModelStateTest, TakesOverTheSettings) {
    settings->storedDestination = Url::file("/anderswo");
    settings->storedUser = "anna";
    settings->storedHost = "nas:2222";
    settings->storedPath = "fotos";
    settings->storedByDate = true;
    settings->storedByType = false;
    settings->storedUseFromDate = true;
    settings->storedAutoImport = true;
    make();
    EXPECT_EQ(model->dest(), Url::file("/anderswo"));
    EXPECT_EQ(model->sftpUser(), "anna");
    EXPECT_EQ(model->sftpHost(), "nas:2222");
    EXPECT_EQ(model->sftpPath(), "fotos");
    EXPECT_TRUE(model->byDate());
    EXPECT_FALSE(model->byType());
    EXPECT_TRUE(model->useFromDate());
    EXPECT_TRUE(model->autoImportEnabled());
}

TEST_F(ImportModelStateTest, BeginsWithTheServerOfTheSettings) {
    settings->storedKind = DestinationKind::sftp;
    settings->storedUser = "anna";
    settings->storedHost = "nas:2222";
    settings->storedPath = "fotos";
    access->granted = false;
    make();
    EXPECT_EQ(model->destinationKind(), DestinationKind::sftp);
    EXPECT_EQ(
        model->dest(),
        (Url{.scheme = "sftp", .user = "anna", .host = "nas", .port = 2222, .path = "/fotos"}));
    EXPECT_FALSE(model->destNeedsChoice());
    EXPECT_EQ(settings->storedDestination, Url::file("/bilder"));
}

TEST_F(ImportModelStateTest, PrefersARestoredGrantToTheStoredFolder) {
    access->restorable = Url::file("/verschoben");
    make();
    EXPECT_EQ(settings->storedDestination, Url::file("/verschoben"));
    EXPECT_EQ(model->dest(), Url::file("/verschoben"));
}

TEST_F(ImportModelStateTest, NeedsAChoiceExactlyForAFolderWithoutGrant) {
    make();
    access->granted = false;
    EXPECT_TRUE(model->destNeedsChoice());
    model->setDest(Url{.scheme = "sftp", .host = "nas", .path = "/fotos"});
    EXPECT_FALSE(model->destNeedsChoice());
}

TEST_F(ImportModelStateTest, OnlyStoresTheLayout) {
    make();
    file(*attached, "A.JPG", "aaaa");
    connect(attached);
    record();
    model->setByDate(true);
    model->setByType(false);
    EXPECT_TRUE(model->byDate());
    EXPECT_FALSE(model->byType());
    EXPECT_TRUE(settings->storedByDate);
    EXPECT_FALSE(settings->storedByType);
    EXPECT_EQ(phases, (Phases{Phase::ready}));
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelStateTest, KeepsTheLatestFiveHundredLinesOfTheLog) {
    make();
    for (int line = 1; line <= 500; ++line) model->addLog(std::to_string(line));
    EXPECT_EQ(model->log().size(), 500);
    EXPECT_EQ(model->log().front(), "1");
    model->addLog("501");
    EXPECT_EQ(model->log().size(), 500);
    EXPECT_EQ(model->log().front(), "2");
    EXPECT_EQ(model->log().back(), "501");
}

TEST_F(ImportModelStateTest, TellsOfChangesOnly) {
    make();
    int changes = 0;
    Handle observer = model->observe([&] { ++changes; });
    model->setUseFromDate(false);
    model->setFromDayIndex(0);
    model->setByType(true);
    EXPECT_EQ(changes, 0);
    model->setByType(false);
    EXPECT_EQ(changes, 1);
    model->addLog("x");
    EXPECT_EQ(changes, 2);
    observer.reset();
    model->setByType(true);
    EXPECT_EQ(changes, 2);
}

TEST_F(ImportModelStateTest, LeavesNothingBehindThatCouldReachItOnceItIsGone) {
    make();
    file(*attached, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    model.reset();
    loop.settle();

    make();
    connect(attached);
    attached->catalogChanged();
    model->reload();
    model.reset();
    EXPECT_EQ(loop.timers(), 0);
    loop.advance(10s);
    EXPECT_EQ(attached->opened, 2);
    attached->sessionOpened();
    attached->catalogReady();
    attached->catalogChanged();
}

}  // namespace
}  // namespace bildkurier
