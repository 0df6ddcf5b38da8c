// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"
#include "ImportModelWithTwoCameras.h"

#include <chrono>
#include <cmath>
#include <limits>
#include <map>

namespace bildkurier {
namespace {

using namespace std::chrono;

class ImportModelFilterTest : public ImportModelWithTwoCameras {};

TEST_F(ImportModelFilterTest, TakesUpTheChosenFirstDay) {
    const struct {
        std::optional<std::string> stored;
        double index;
        std::string storedAfterwards;
    } cases[] = {
        {std::nullopt, 4, "2024-05-05"},  // the newest day
        {"2024-05-01", 0, "2024-05-01"}, {"2024-05-03", 2, "2024-05-03"},
        {"2024-05-05", 4, "2024-05-05"}, {"2024-04-30", 4, "2024-05-05"},
        {"2024-5-3", 4, "2024-05-05"},   {"", 4, "2024-05-05"},
    };
    fillFiveDays();
    for (const auto& [stored, index, storedAfterwards] : cases) {
        settings->storedFromDay = stored;
        make();
        connect(attached);
        EXPECT_EQ(model->fromDayIndex(), index) << stored.value_or("absent");
        EXPECT_EQ(model->fromDaySelected(), model->cameraDays()[static_cast<std::size_t>(index)]);
        EXPECT_EQ(settings->storedFromDay, storedAfterwards);
    }
}

TEST_F(ImportModelFilterTest, HasNoDateFilterWithoutDatedFiles) {
    settings->storedUseFromDate = true;
    settings->storedFromDay = "2024-05-03";
    make();
    fillFiveDays();
    connect(attached);
    EXPECT_EQ(model->fromDayIndex(), 2);
    file(*other, "A.JPG", "aaaa");
    model->cameraBrowserDidAdd(other);
    model->setSelectedID("B");
    deliver(*other);
    EXPECT_TRUE(model->cameraDays().empty());
    EXPECT_EQ(model->fromDayIndex(), 0);
    EXPECT_EQ(model->fromDaySelected(), std::nullopt);
    EXPECT_EQ(model->status(), "1 neue Dateien (" + formatBytes(4) + ") bereit zum Import.");
    EXPECT_EQ(settings->storedFromDay, "2024-05-03");
}

TEST_F(ImportModelFilterTest, SaysWhatIsNew) {
    const struct {
        bool useFromDate;
        double index;
        Names present;
        Names missing;
        std::string status;
    } cases[] = {
        {false,
         1,
         {},
         {"C.JPG", "A.JPG", "B.JPG"},
         "3 neue Dateien (" + formatBytes(1'222'333) + ") bereit zum Import."},
        {true,
         0,
         {},
         {"A.JPG", "B.JPG"},
         "2 neue Dateien (" + formatBytes(222'333) + ") bereit zum Import (ab 08.05.24)"},
        {true,
         1,
         {},
         {"B.JPG"},
         "1 neue Dateien (" + formatBytes(222'000) + ") bereit zum Import (ab 09.05.24)"},
        {true,
         0,
         {"A.JPG"},
         {"B.JPG"},
         "1 neue Dateien (" + formatBytes(222'000) + ") bereit zum Import (ab 08.05.24)"},
        {true, 1, {"B.JPG"}, {}, nothingNew},
        {false, 1, {"A.JPG", "B.JPG", "C.JPG"}, {}, nothingNew},
    };
    const auto contents =
        std::map<std::string, std::string>{{"A.JPG", std::string(333, 'a')},
                                           {"B.JPG", std::string(222'000, 'b')},
                                           {"C.JPG", std::string(1'000'000, 'c')}};
    file(*attached, "A.JPG", contents.at("A.JPG"), noon(2024y / May / 8));
    file(*attached, "B.JPG", contents.at("B.JPG"), noon(2024y / May / 9));
    file(*attached, "C.JPG", contents.at("C.JPG"));
    for (const auto& [useFromDate, index, present, missing, status] : cases) {
        settings->storedUseFromDate = useFromDate;
        store->files.clear();
        for (const auto& name : present) store->files["/bilder/" + name] = contents.at(name);
        make();
        connect(attached);
        model->setFromDayIndex(index);
        EXPECT_EQ(model->phase(), Phase::ready);
        EXPECT_EQ(newNames(), missing);
        EXPECT_EQ(model->status(), status);
    }
}

TEST_F(ImportModelFilterTest, StoresAndAppliesTheDateFilter) {
    make();
    fillFiveDays();
    connect(attached);
    EXPECT_EQ(newNames().size(), 5);
    model->setUseFromDate(true);
    EXPECT_TRUE(settings->storedUseFromDate);
    EXPECT_EQ(newNames(), (Names{"5.JPG"}));
    model->setFromDayIndex(3);
    EXPECT_EQ(settings->storedFromDay, "2024-05-04");
    EXPECT_EQ(newNames(), (Names{"4.JPG", "5.JPG"}));
    model->setUseFromDate(false);
    EXPECT_FALSE(settings->storedUseFromDate);
    EXPECT_EQ(newNames().size(), 5);
    EXPECT_EQ(loop.backgroundTasks(), 0);
}

TEST_F(ImportModelFilterTest, OnlyStoresTheDateFilterWhileNothingIsReady) {
    make();
    model->setUseFromDate(true);
    EXPECT_TRUE(settings->storedUseFromDate);
    EXPECT_EQ(model->status(), searching);
    model->setFromDayIndex(3);
    EXPECT_EQ(settings->storedFromDay, std::nullopt);
    EXPECT_EQ(model->status(), searching);
    model->cameraBrowserDidAdd(attached);
    model->setUseFromDate(false);
    EXPECT_EQ(model->phase(), Phase::connecting);
    EXPECT_EQ(model->status(), "Verbinde mit Kamera A …");
}

TEST_F(ImportModelFilterTest, IgnoresSliderMovesWithinADay) {
    make();
    attached->deviceIdentity = "serial:1";
    fillFiveDays();
    connect(attached);
    model->setFromDayIndex(2.2);
    EXPECT_EQ(settings->storedFromDay, "2024-05-03");
    settings->storedFromDay.reset();
    model->setAutoImportEnabled(true);
    const std::string status = model->status();
    model->setFromDayIndex(2.9);
    EXPECT_EQ(model->fromDayIndex(), 2.9);
    EXPECT_EQ(settings->storedFromDay, std::nullopt);
    EXPECT_EQ(model->status(), status);
    model->setFromDayIndex(3.0);
    EXPECT_EQ(settings->storedFromDay, "2024-05-04");
    EXPECT_NE(model->status(), status);
}

TEST_F(ImportModelFilterTest, FindsTheDayOfAnyWholeIndex) {
    make();
    fillFiveDays();
    connect(attached);
    const double limit = 0x1p63;
    const struct {
        double index;
        std::size_t day;
    } cases[] = {{-limit, 0}, {-1, 0}, {-0.9, 0}, {0, 0},  {0.99, 0},
                 {1.99, 1},   {4, 4},  {4.5, 4},  {99, 4}, {std::nextafter(limit, 0), 4}};
    for (const auto& [index, day] : cases) {
        model->setFromDayIndex(index);
        EXPECT_EQ(model->fromDaySelected(), model->cameraDays()[day]) << index;
    }
}

TEST_F(ImportModelFilterTest, EndsTheProgramOnAnIndexThatIsNoWholeNumber) {
    make();
    fillFiveDays();
    connect(attached);
    using Limits = std::numeric_limits<double>;
    for (const double index :
         {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 0x1p63, -0x1.8p63}) {
        EXPECT_DEATH(model->setFromDayIndex(index), "Fatal error: the day's index");
    }
}

}  // namespace
}  // namespace bildkurier
