// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportModelWithTwoCameras.h"
#include "LocalDay.h"

#include <chrono>

namespace bildkurier {
namespace {

using namespace std::chrono;

class ImportModelCatalogueTest : public ImportModelWithTwoCameras {};

TEST_F(ImportModelCatalogueTest, SortsTheCatalogueByShotDateAndSumsItUp) {
    make();
    file(*attached, "late.JPG", "1", noon(2024y / May / 9));
    file(*attached, "late.XMP", "22", noon(2024y / May / 9));
    file(*attached, "undated.JPG", "333");
    file(*attached, std::nullopt, "4444", noon(2024y / May / 1));
    file(*attached, "early.CR3", "55555", noon(2024y / May / 1));
    file(*attached, "also undated.JPG", "666666");
    connect(attached);
    EXPECT_EQ(model->cameraFileCount(), 6);
    EXPECT_EQ(model->cameraBytes(), 21);
    EXPECT_EQ(newNames(),
              (Names{"undated.JPG", "also undated.JPG", "early.CR3", "late.JPG", "late.XMP"}));
    EXPECT_EQ(model->newBytes(), 17);
    EXPECT_EQ(model->newByType(),
              (std::vector<TypeSummary>{{"CR3", 1, 5}, {"JPG", 3, 10}, {"XMP", 1, 2}}));
}

TEST_F(ImportModelCatalogueTest, ListsTheLocalDaysOfTheShots) {
    make();
    const auto shot = [this](Date date) { file(*attached, "A.JPG", "a", date); };
    shot(sys_days(2024y / October / 27) + 22h + 59min);  // 23:59
    shot(sys_days(2024y / October / 26) + 22h);          // 00:00 on the 27th
    shot(sys_days(2024y / October / 27) + 23h);          // 00:00 on the 28th
    shot(sys_days(2024y / March / 30) + 22h + 59min);    // 23:59
    shot(sys_days(2024y / March / 31) + 21h + 59min);    // 23:59
    shot(sys_days(2024y / March / 30) + 23h);            // 00:00 on the 31st
    shot(sys_days(1969y / December / 31) + 22h);
    file(*attached, "B.JPG", "b");
    connect(attached);
    EXPECT_EQ(model->cameraDays(), (std::vector<Date>{
                                       sys_days(1969y / December / 30) + 23h,
                                       sys_days(2024y / March / 29) + 23h,
                                       sys_days(2024y / March / 30) + 23h,
                                       sys_days(2024y / October / 26) + 22h,
                                       sys_days(2024y / October / 27) + 23h,
                                   }));
}

TEST_F(ImportModelCatalogueTest, LeavesFoldersThatCouldNotBeReadOutOfTheDays) {
    make();
    const Date shot = noon(2024y / May / 4);
    file(*attached, "A.JPG", "a", shot);
    file(*attached, "100CANON", "", loop.date())->knownObstacle = Error{"Nicht lesbar"};
    settings->storedUseFromDate = true;
    connect(attached);
    EXPECT_EQ(model->cameraDays(), std::vector{startOfLocalDay(shot)});
    EXPECT_EQ(newNames(), (Names{"A.JPG", "100CANON"})) << "it must not be passed over";
}

TEST_F(ImportModelCatalogueTest, StartsNothingByItselfFromAnEmptyCatalogue) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:1";
    store->folders.insert("/bilder");
    attached->deviceIdentity = "serial:1";
    make();
    connect(attached);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), noFiles);

    const auto begun = file(*attached, "A.JPG", "aaaa");
    begun->holdsBack = true;
    attached->catalogChanged();
    loop.advance(reloadDelay);
    EXPECT_EQ(model->phase(), Phase::importing);

    model->cameraBrowserDidRemove(attached);
    const auto returned = camera("C", "serial:1");
    connect(returned);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), noFiles);

    returned->catalogue = {begun};
    returned->catalogChanged();
    loop.advance(reloadDelay);
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(begun->downloads, 2);
}

TEST_F(ImportModelCatalogueTest, ReadsAChangedCardAfterASecondAndAHalf) {
    make();
    connect(attached);
    file(*attached, "A.JPG", "aaaa");
    attached->catalogChanged();
    loop.advance(1499ms);
    EXPECT_EQ(model->cameraFileCount(), 0);
    record();
    loop.advance(1ms);
    EXPECT_EQ(model->cameraFileCount(), 1);
    EXPECT_EQ(phases, (Phases{Phase::ready, Phase::checking, Phase::ready}));
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelCatalogueTest, ReadsTheCardOnceAfterABurstOfChanges) {
    make();
    connect(attached);
    for (int change = 0; change < 14; ++change) {
        file(*attached, std::to_string(change) + ".JPG", "a");
        attached->catalogChanged();
        EXPECT_EQ(loop.timers(), 1);
        loop.advance(100ms);
    }
    EXPECT_EQ(model->cameraFileCount(), 0);
    loop.advance(100ms);
    EXPECT_EQ(model->cameraFileCount(), 14);
    EXPECT_EQ(loop.timers(), 0);
    file(*attached, "last.JPG", "a");
    attached->catalogChanged();
    loop.advance(reloadDelay);
    EXPECT_EQ(model->cameraFileCount(), 15);
}

TEST_F(ImportModelCatalogueTest, ReadsTheCardAgainThatChangedWhileTheDestinationWasRead) {
    make();
    model->cameraBrowserDidAdd(attached);
    attached->sessionOpened();
    attached->catalogReady();
    ASSERT_EQ(model->phase(), Phase::checking);
    file(*attached, "A.JPG", "aaaa");
    attached->catalogChanged();
    loop.settle();
    EXPECT_EQ(model->cameraFileCount(), 0);
    loop.advance(reloadDelay);
    EXPECT_EQ(model->cameraFileCount(), 1);
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelCatalogueTest, ReadsTheCardAgainThatChangedDuringAnImport) {
    const auto held = file(*attached, "A.JPG", "aaaa");
    held->holdsBack = true;
    make();
    connect(attached);
    model->startImport();
    loop.settle();
    ASSERT_EQ(model->phase(), Phase::importing);
    file(*attached, "B.JPG", "bb");
    attached->catalogChanged();
    held->deliver();
    loop.settle();
    EXPECT_EQ(newNames(), Names());
    loop.advance(reloadDelay);
    EXPECT_EQ(newNames(), Names{"B.JPG"});
    EXPECT_EQ(loop.timers(), 0);
}

TEST_F(ImportModelCatalogueTest, HearsOfChangesOnlyWhenReady) {
    make();
    model->cameraBrowserDidAdd(attached);
    attached->catalogChanged();
    attached->sessionOpened();
    attached->catalogChanged();
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    attached->catalogReady();
    EXPECT_EQ(model->phase(), Phase::checking);
    attached->catalogChanged();
    EXPECT_EQ(loop.timers(), 0);
    loop.settle();
    model->startImport();
    loop.settle();
    const std::size_t timers = loop.timers();
    attached->catalogChanged();
    EXPECT_EQ(loop.timers(), timers);
}

TEST_F(ImportModelCatalogueTest, PutsAReReadOffThatComesAtTheWrongTime) {
    make();
    connect(attached);
    attached->catalogChanged();
    model->reload();
    file(*attached, "A.JPG", "aaaa")->holdsBack = true;
    loop.advance(reloadDelay);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(model->cameraFileCount(), 0);

    deliver(*attached);
    attached->catalogChanged();
    model->startImport();
    file(*attached, "B.JPG", "bb");
    loop.advance(reloadDelay);
    EXPECT_EQ(model->phase(), Phase::importing);
    EXPECT_EQ(model->cameraFileCount(), 1);

    static_cast<FakeCameraFile&>(*attached->catalogue.front()).deliver();
    loop.settle();
    loop.advance(reloadDelay);
    EXPECT_EQ(model->cameraFileCount(), 2);
}

TEST_F(ImportModelCatalogueTest, DropsAReReadWhenItsCameraIsGone) {
    make();
    connect(attached);
    attached->catalogChanged();
    model->cameraBrowserDidRemove(attached);
    record();
    loop.advance(reloadDelay);
    EXPECT_EQ(phases, (Phases{Phase::noCamera}));
}

TEST_F(ImportModelCatalogueTest, ReReadsTheCameraThatIsHeldByThen) {
    make();
    connect(attached);
    attached->catalogChanged();
    model->cameraBrowserDidAdd(other);
    model->setSelectedID("B");
    deliver(*other);
    file(*other, "B.JPG", "bb");
    loop.advance(reloadDelay);
    EXPECT_EQ(model->cameraFileCount(), 1);
}

}  // namespace
}  // namespace bildkurier
