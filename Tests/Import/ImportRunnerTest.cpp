// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FailingFileStore.h"
#include "FakeCameraFile.h"
#include "Formatting.h"
#include "ImportError.h"
#include "ImportRunner.h"
#include "LinkedFolder.h"
#include "ManualRunLoop.h"
#include "MemoryFileStore.h"
#include "PassingFileStore.h"
#include "SlowMoves.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace bildkurier {
namespace {

using Lines = std::vector<std::string>;
using Progress = ImportRunner::Progress;

constexpr std::int64_t headroom = 209'715'200;

/// Another store that admits no files to one folder.
class BarredFolder final : public PassingFileStore {
public:
    using PassingFileStore::PassingFileStore;
    Result<> admitsFiles(const Url& folder) override {
        if (folder.path == "/bilder/JPG") return failure("erst auflisten");
        return {};
    }
};

class ImportRunnerTest : public testing::Test {
protected:
    ImportRunnerTest() {
        store->folders.insert("/card");
        attach(*runner);
    }

    void attach(ImportRunner& target) {
        target.onLog = [this](const std::string& line) { log.push_back(line); };
        target.onProgress = [this](const Progress& progress) { reports.push_back(progress); };
        target.onFinish = [this](const Progress& progress, bool cancelled) {
            EXPECT_EQ(reports.empty() ? Progress{} : reports.back(), progress);
            finished.emplace_back(progress, cancelled);
        };
    }

    std::shared_ptr<FakeCameraFile> file(std::optional<std::string> name, std::string contents) {
        return files.emplace_back(
            std::make_shared<FakeCameraFile>(store, std::move(name), std::move(contents)));
    }

    Result<> start(FolderLayout layout = {}) {
        return runner->start({files.begin(), files.end()}, destination, layout);
    }

    void runAll(FolderLayout layout = {}) {
        ASSERT_TRUE(start(layout));
        loop.settle();
        ASSERT_EQ(finished.size(), 1);
        EXPECT_FALSE(finished[0].second);
        EXPECT_FALSE(runner->isRunning());
        EXPECT_FALSE(store->fileExists(staging));
    }

    ManualRunLoop loop;
    std::shared_ptr<MemoryFileStore> store = std::make_shared<MemoryFileStore>();
    std::unique_ptr<ImportRunner> runner = std::make_unique<ImportRunner>(store, loop, loop);
    Url destination = Url::file("/bilder");
    Url staging = Url::file("/bilder/.bildkurier-tmp");
    std::vector<std::shared_ptr<FakeCameraFile>> files;
    Lines log;
    std::vector<Progress> reports;
    std::vector<std::pair<Progress, bool>> finished;
};

TEST_F(ImportRunnerTest, IsIdleAtFirst) {
    EXPECT_FALSE(runner->isRunning());
    EXPECT_EQ(runner->progress(), Progress());
}

TEST_F(ImportRunnerTest, FinishesAtOnceWithoutFilesAndWithoutCheckingSpace) {
    store->capacity = 0;
    ASSERT_TRUE(start());
    EXPECT_TRUE(runner->isRunning());
    EXPECT_TRUE(store->fileExists(staging));
    EXPECT_TRUE(finished.empty());
    loop.settle();
    EXPECT_EQ(finished, (std::vector{std::pair(Progress(), false)}));
    EXPECT_EQ(reports, (std::vector{Progress()}));
    EXPECT_FALSE(store->fileExists(staging));
    EXPECT_EQ(log, Lines());
}

TEST_F(ImportRunnerTest, LoadsFilesInOrderAndReportsEachStep) {
    file("A.JPG", "aaaa");
    file("B.CR3", "bbbbbbb");
    runAll();
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}, {"B.CR3", "bbbbbbb"}}));
    EXPECT_EQ(log, (Lines{"✓ bilder/A.JPG  (" + formatBytes(4) + ")",
                          "✓ bilder/B.CR3  (" + formatBytes(7) + ")"}));
    EXPECT_EQ(
        reports,
        (std::vector<Progress>{
            {.total = 2, .currentName = "A.JPG", .currentTotal = 4},
            {.total = 2, .currentName = "A.JPG", .isTransferring = true},
            {.total = 2, .done = 1, .bytesDone = 4, .currentName = "B.CR3", .currentTotal = 7},
            {.total = 2, .done = 1, .bytesDone = 4, .currentName = "B.CR3", .isTransferring = true},
            {.total = 2, .done = 2, .bytesDone = 11},
        }));
}

TEST_F(ImportRunnerTest, SortsIntoDayAndTypeFolders) {
    const Date noon(std::chrono::milliseconds(1'715'250'000'000));
    const std::string day = dayFormatter().text(noon);
    const struct {
        FolderLayout layout;
        std::string path;
        std::string lastFolder;
    } cases[] = {
        {{.byDate = false, .byType = false}, "A.jpeg", "bilder"},
        {{.byDate = true, .byType = false}, day + "/A.jpeg", day},
        {{.byDate = false, .byType = true}, "JPG/A.jpeg", "JPG"},
        {{.byDate = true, .byType = true}, day + "/JPG/A.jpeg", "JPG"},
    };
    for (const auto& [layout, path, lastFolder] : cases) {
        files.clear();
        log.clear();
        finished.clear();
        store->removeItem(destination);
        file("A.jpeg", "a")->shot = noon;
        runAll(layout);
        EXPECT_EQ(store->files.count("/bilder/" + path), 1) << path;
        EXPECT_EQ(log, (Lines{"✓ " + lastFolder + "/A.jpeg  (" + formatBytes(1) + ")"}));
    }
}

TEST_F(ImportRunnerTest, PutsAFileWithoutShotDateIntoTheFolderOfTheDayItIsBegun) {
    file("A.JPG", "a")->holdsBack = true;
    file("B.JPG", "b");
    const std::string first = dayFormatter().text(loop.wallClock);
    ASSERT_TRUE(start({.byDate = true}));
    loop.settle();
    loop.advance(std::chrono::hours(24));
    const std::string second = dayFormatter().text(loop.wallClock);
    ASSERT_NE(first, second);
    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(store->tree(destination), (Tree{{first + "/", ""},
                                              {first + "/A.JPG", "a"},
                                              {second + "/", ""},
                                              {second + "/B.JPG", "b"}}));
}

TEST_F(ImportRunnerTest, CallsAFileWithoutNameUnbenannt) {
    file(std::nullopt, "one");
    file(std::nullopt, "two");
    runAll({.byType = true});
    EXPECT_EQ(
        store->tree(destination),
        (Tree{{"Sonstige/", ""}, {"Sonstige/unbenannt", "one"}, {"Sonstige/unbenannt_1", "two"}}));
}

TEST_F(ImportRunnerTest, SavesUnderAFreeNameAndSaysSo) {
    ASSERT_TRUE(store->createDirectory(destination));
    store->files["/bilder/A.JPG"] = "other";
    store->files["/bilder/A_1.JPG"] = "another";
    file("A.JPG", "aaa");
    runAll();
    EXPECT_EQ(store->files.at("/bilder/A.JPG"), "other");
    EXPECT_EQ(store->files.at("/bilder/A_1.JPG"), "another");
    EXPECT_EQ(store->files.at("/bilder/A_2.JPG"), "aaa");
    EXPECT_EQ(log, (Lines{"ℹ︎ A.JPG existiert schon mit anderem Inhalt → gespeichert als A_2.JPG",
                          "✓ bilder/A_2.JPG  (" + formatBytes(3) + ")"}));
    EXPECT_EQ(reports[0].currentName, "A_2.JPG");
    EXPECT_EQ(files[0]->staged, staging.appending("A_2.JPG"));
}

TEST_F(ImportRunnerTest, TellsWhichFilesBearAnotherNameThanTheCameras) {
    std::vector<std::vector<std::string>> told;
    runner->onRenamed = [&](const ImportRunner::RenamedFile& renamed) {
        EXPECT_EQ(renamed.destination, destination);
        told.push_back({renamed.key, renamed.savedKey, std::to_string(log.size())});
    };
    file("A.JPG", "aaa");
    file("A.JPG", "aaaa");
    file("A.JPG", "aaaaa")->error = Error{"Lesefehler"};
    file("B.JPG", "bb");
    runAll();
    EXPECT_EQ(told, (std::vector<std::vector<std::string>>{{"a.jpg|4", "a_1.jpg|4", "2"}}));
}

TEST_F(ImportRunnerTest, KeepsNamesApartThatADestinationTakesForOne) {
    store = std::make_shared<MemoryFileStore>(true);
    runner = std::make_unique<ImportRunner>(store, loop, loop);
    attach(*runner);
    file("IMG_1.JPG", "upper");
    file("img_1.jpg", "lower!");
    runAll();
    EXPECT_EQ(store->tree(destination), (Tree{{"IMG_1.JPG", "upper"}, {"img_1_1.jpg", "lower!"}}));
}

TEST_F(ImportRunnerTest, DiscardsWhatAnInterruptedRunLeftInStaging) {
    ASSERT_TRUE(store->createDirectory(staging));
    store->files[staging.path + "/OLD.JPG"] = "half";
    file("A.JPG", "a");
    runAll();
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "a"}}));
}

TEST_F(ImportRunnerTest, DoesNotStartWithoutAStagingFolder) {
    store->files["/bilder"] = "a file";
    file("A.JPG", "a");
    const auto started = start();
    ASSERT_FALSE(started);
    EXPECT_FALSE(started.error().message.empty());
    EXPECT_FALSE(runner->isRunning());
    EXPECT_EQ(runner->progress(), Progress());
    loop.settle();
    EXPECT_TRUE(reports.empty());
    EXPECT_TRUE(finished.empty());
}

TEST_F(ImportRunnerTest, WantsRoomForTheLargestFileAndHeadroom) {
    file("A.JPG", "a")->cameraSize = 1'000'000;
    file("B.JPG", "b")->cameraSize = 38'500'000;
    file("C.JPG", "c")->cameraSize = 2'000'000;
    const std::int64_t needed = 38'500'000 + headroom;

    store->capacity = needed - 1;
    const auto refused = start();
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), ImportError::notEnoughSpace(38'500'000, needed - 1));
    EXPECT_EQ(refused.error().message, "Zu wenig Platz für die größte Datei (" +
                                           formatBytes(38'500'000) + " nötig, " +
                                           formatBytes(needed - 1) + " frei).");
    EXPECT_FALSE(store->fileExists(staging));
    EXPECT_FALSE(runner->isRunning());

    store->capacity = needed;
    EXPECT_TRUE(start());
    runner->abandon();
    loop.settle();
    store->capacity = std::nullopt;
    EXPECT_TRUE(start());
}

TEST_F(ImportRunnerTest, WatchesTheStagedFileGrowTwiceASecond) {
    file("A.JPG", "0123456789")->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_EQ(loop.timers(), 1);
    reports.clear();

    loop.advance(Duration(0.5));
    EXPECT_TRUE(reports.empty()) << "nothing there yet counts as 0 bytes";
    files[0]->grow(3);
    loop.advance(Duration(0.49));
    EXPECT_TRUE(reports.empty());
    loop.advance(Duration(0.01));
    loop.advance(Duration(5));
    files[0]->grow(7);
    loop.advance(Duration(0.5));
    EXPECT_EQ(reports,
              (std::vector<Progress>{
                  {.total = 1, .currentName = "A.JPG", .currentBytes = 3, .currentTotal = 10},
                  {.total = 1, .currentName = "A.JPG", .currentBytes = 7, .currentTotal = 10}}));

    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(loop.timers(), 0);
    EXPECT_EQ(finished[0].first, (Progress{.total = 1, .done = 1, .bytesDone = 10}));
}

TEST_F(ImportRunnerTest, CountsAFailedDownloadAndGoesOn) {
    file("A.JPG", "aaaa")->error = Error{"Die Karte wurde entfernt."};
    file("B.JPG", "bb");
    runAll();
    EXPECT_EQ(log, (Lines{"✗ A.JPG: Die Karte wurde entfernt.",
                          "✓ bilder/B.JPG  (" + formatBytes(2) + ")"}));
    EXPECT_EQ(finished[0].first, (Progress{.total = 2, .done = 1, .failed = 1, .bytesDone = 6}));
    EXPECT_EQ(store->tree(destination), (Tree{{"B.JPG", "bb"}}));
}

TEST_F(ImportRunnerTest, RefusesAStagedFileOfTheWrongSize) {
    file("SHORT.JPG", "123456789")->cameraSize = 10;
    file("LONG.JPG", "12345678901")->cameraSize = 10;
    file("B.JPG", "bb");
    runAll();
    EXPECT_EQ(log, (Lines{"✗ SHORT.JPG: Größe stimmt nicht (9 statt 10 Bytes)",
                          "✗ LONG.JPG: Größe stimmt nicht (11 statt 10 Bytes)",
                          "✓ bilder/B.JPG  (" + formatBytes(2) + ")"}));
    EXPECT_EQ(finished[0].first, (Progress{.total = 3, .done = 1, .failed = 2, .bytesDone = 22}));
    EXPECT_EQ(store->tree(destination), (Tree{{"B.JPG", "bb"}}));
}

TEST_F(ImportRunnerTest, RemovesAStagedFileOfTheWrongSizeAtOnce) {
    file("SHORT.JPG", "123")->cameraSize = 4;
    file("B.JPG", "bb")->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_EQ(files[1]->downloads, 1);
    EXPECT_EQ(store->tree(staging), Tree());
}

TEST_F(ImportRunnerTest, TakesAMissingStagedFileForMinusOneBytes) {
    const auto held = file("A.JPG", "aaaa");
    held->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    held->deliver();
    store->files.erase(staging.path + "/A.JPG");
    loop.settle();
    EXPECT_EQ(log, (Lines{"✗ A.JPG: Größe stimmt nicht (-1 statt 4 Bytes)"}));
}

TEST_F(ImportRunnerTest, FindsAFileSavedUnderAnotherName) {
    file("A.JPG", "aaaa")->savedAs = "A 2.JPG";
    runAll();
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}}));
}

TEST_F(ImportRunnerTest, NeverFollowsASavedNameOutOfStaging) {
    store->files["/card/secret"] = "aaaa";
    for (const std::string name : {"../../card/secret", "..", ".", "/card/secret"}) {
        const auto held = std::make_shared<FakeCameraFile>(store, "A.JPG", "aaaa");
        held->holdsBack = true;
        log.clear();
        ASSERT_TRUE(runner->start({held}, destination, {}));
        loop.settle();
        held->savedAs = name;
        held->deliver();
        store->files["/card/secret"] = "aaaa";
        loop.settle();
        EXPECT_EQ(log, (Lines{"✗ A.JPG: Ungültiger Dateiname"})) << name;
        EXPECT_EQ(store->files.at("/card/secret"), "aaaa") << name;
        EXPECT_EQ(store->tree(destination), Tree()) << name;
    }
}

TEST_F(ImportRunnerTest, CountsAFailedMoveAndGoesOn) {
    const auto failing = std::make_shared<FailingFileStore>(store);
    failing->failAt = 3;  // after staging removed and made, and the target folder made
    runner = std::make_unique<ImportRunner>(failing, loop, loop);
    attach(*runner);
    file("A.JPG", "aaaa");
    file("B.JPG", "bb");
    runAll();
    EXPECT_EQ(log, (Lines{"✗ A.JPG: " + failing->error.message,
                          "✓ bilder/B.JPG  (" + formatBytes(2) + ")"}));
    EXPECT_EQ(finished[0].first, (Progress{.total = 2, .done = 1, .failed = 1, .bytesDone = 6}));
}

TEST_F(ImportRunnerTest, EndsTheRunWhenAFolderCannotBeMade) {
    ASSERT_TRUE(store->createDirectory(destination));
    store->files["/bilder/CR3"] = "in the way";
    file("A.JPG", "aaaa");
    file("B.CR3", "bb");
    file("C.JPG", "cc");
    runAll({.byType = true});
    ASSERT_EQ(log.size(), 3);
    EXPECT_TRUE(log[1].starts_with("Kann Ordner nicht anlegen: /bilder/CR3: ")) << log[1];
    EXPECT_GT(log[1].size(), std::string("Kann Ordner nicht anlegen: /bilder/CR3: ").size());
    EXPECT_EQ(log[2], "1 weitere Datei wurde nicht mehr versucht und fehlt noch.");
    EXPECT_EQ(finished[0].first, (Progress{.total = 3, .done = 1, .failed = 1, .bytesDone = 4}));
    EXPECT_EQ(runner->failedFiles(), std::vector<std::size_t>{1});
    EXPECT_EQ(files[2]->downloads, 0);
}

TEST_F(ImportRunnerTest, CountsWhatItDoesNotTryWithoutItsFolder) {
    ASSERT_TRUE(store->createDirectory(destination));
    store->files["/bilder/JPG"] = "in the way";
    for (const char* name : {"A.JPG", "B.JPG", "C.JPG"}) file(name, "aaaa");
    runAll({.byType = true});
    ASSERT_EQ(log.size(), 2);
    EXPECT_EQ(log[1], "2 weitere Dateien wurden nicht mehr versucht und fehlen noch.");
    EXPECT_EQ(finished[0].first, (Progress{.total = 3, .failed = 1}));
}

TEST_F(ImportRunnerTest, SeeksNoNameInAFolderThatAdmitsNoFiles) {
    store->files["/bilder/JPG/A.JPG"] = "other";
    store->folders = {"/", "/bilder", "/bilder/JPG"};
    runner = std::make_unique<ImportRunner>(std::make_shared<BarredFolder>(store), loop, loop);
    attach(*runner);
    const auto barred = file("A.JPG", "aaaa");
    file("B.CR3", "bb");
    runAll({.byType = true});
    EXPECT_EQ(log, (Lines{"✗ A.JPG: erst auflisten", "✓ CR3/B.CR3  (" + formatBytes(2) + ")"}));
    EXPECT_EQ(barred->downloads, 0);
    EXPECT_EQ(finished[0].first, (Progress{.total = 2, .done = 1, .failed = 1, .bytesDone = 6}));
}

TEST_F(ImportRunnerTest, CompletesTheFileInFlightWhenCancelled) {
    file("A.JPG", "aaaa")->holdsBack = true;
    file("B.JPG", "bb");
    ASSERT_TRUE(start());
    loop.settle();
    runner->cancel();
    loop.settle();
    EXPECT_TRUE(runner->isRunning());
    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(finished,
              (std::vector{std::pair(Progress{.total = 2, .done = 1, .bytesDone = 4}, true)}));
    EXPECT_EQ(files[1]->downloads, 0);
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}}));
}

TEST_F(ImportRunnerTest, BeginsNothingWhenCancelledBeforeTheFirstFile) {
    file("A.JPG", "aaaa");
    ASSERT_TRUE(start());
    runner->cancel();
    loop.settle();
    EXPECT_EQ(finished, (std::vector{std::pair(Progress{.total = 1}, true)}));
    EXPECT_EQ(files[0]->downloads, 0);
}

TEST_F(ImportRunnerTest, ForgetsACancelAtTheNextStart) {
    file("A.JPG", "aaaa");
    ASSERT_TRUE(start());
    runner->cancel();
    loop.settle();
    finished.clear();
    runAll();
    EXPECT_EQ(finished[0].first.done, 1);
}

TEST_F(ImportRunnerTest, MakesNoFolderForAFileThatIsKnownToBeLost) {
    file("100CANON", "")->knownObstacle = Error{"Ordner DCIM/100CANON ist nicht lesbar"};
    file("B.JPG", "bb");
    runAll({.byDate = true, .byType = true});
    EXPECT_EQ(files[0]->downloads, 0);
    EXPECT_EQ(finished[0].first, (Progress{.total = 2, .done = 1, .failed = 1, .bytesDone = 2}));
    EXPECT_EQ(runner->failedFiles(), std::vector<std::size_t>{0});
    EXPECT_EQ(log.front(), "✗ 100CANON: Ordner DCIM/100CANON ist nicht lesbar");
    const std::string today = dayFormatter().text(loop.wallClock);
    EXPECT_EQ(store->tree(destination),
              (Tree{{today + "/", ""}, {today + "/JPG/", ""}, {today + "/JPG/B.JPG", "bb"}}));
}

TEST_F(ImportRunnerTest, LoadsIntoAnotherDestinationWhileAMoveHangs) {
    const auto slow = std::make_shared<SlowMoves>(store);
    runner = std::make_unique<ImportRunner>(slow, loop, loop);
    attach(*runner);
    file("A.JPG", "aaaa");
    slow->meanwhile = [&] {
        runner->abandon();
        loop.settle();
        for (const char* path : {"/bilder", "/bilder/", "/bilder/2024", "/"})
            EXPECT_TRUE(runner->isWindingUp(Url::file(path))) << path;
        for (const char* path : {"/bilder2", "/archiv"})
            EXPECT_FALSE(runner->isWindingUp(Url::file(path))) << path;
        Url server = Url::file("/bilder");
        server.scheme = "sftp";
        EXPECT_FALSE(runner->isWindingUp(server));
        EXPECT_FALSE(runner->start({files.begin(), files.end()}, destination, {}));
        ASSERT_TRUE(runner->start({files.begin(), files.end()}, Url::file("/archiv"), {}));
        loop.settle();
        EXPECT_EQ(finished.size(), 1U);
        EXPECT_FALSE(runner->isSettled());
    };
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_TRUE(runner->isSettled());
    for (const char* path : {"/bilder", "/archiv"})
        EXPECT_EQ(store->tree(Url::file(path)), (Tree{{"A.JPG", "aaaa"}})) << path;
}

TEST_F(ImportRunnerTest, KnowsADestinationByWhateverPathALinkGivesIt) {
    const auto linked = std::make_shared<LinkedFolder>(store);
    runner = std::make_unique<ImportRunner>(linked, loop, loop);
    const Url link = Url::file("/link");
    for (const auto& [begun, other] :
         {std::pair(destination, link), std::pair(link, destination)}) {
        SCOPED_TRACE(begun.path);
        file("A.JPG", "aaaa");
        ASSERT_TRUE(runner->start({files.begin(), files.end()}, begun, {}));
        runner->abandon();
        EXPECT_TRUE(runner->isWindingUp(begun));
        EXPECT_TRUE(runner->isWindingUp(linked->resolved(other)));
        EXPECT_FALSE(runner->isWindingUp(Url::file("/linker")));
        EXPECT_FALSE(runner->start({files.begin(), files.end()}, other, {}));
        loop.settle();
        EXPECT_TRUE(runner->start({files.begin(), files.end()}, other, {}));
        runner->abandon();
        loop.settle();
    }
}

TEST_F(ImportRunnerTest, KnowsADestinationWhoseLinkLeadsElsewhereMeanwhile) {
    const auto linked = std::make_shared<LinkedFolder>(store);
    runner = std::make_unique<ImportRunner>(linked, loop, loop);
    const Url link = Url::file("/link");
    file("A.JPG", "aaaa");
    ASSERT_TRUE(runner->start({files.begin(), files.end()}, link, {}));
    runner->abandon();
    store->folders.insert("/anderswo");
    linked->leadsTo = "/anderswo";
    EXPECT_FALSE(runner->start({files.begin(), files.end()}, link, {}));
    loop.settle();
    EXPECT_TRUE(runner->start({files.begin(), files.end()}, link, {}));
    runner->abandon();
    loop.settle();
}

TEST_F(ImportRunnerTest, WaitsForAMoveThatNeedsTheStagingFolderOfAnotherDestination) {
    store->folders.insert("/zwischen");
    for (const char* path : {"/zwischen/staging", "/zwischen", "/zwischen/staging/tiefer"}) {
        const auto slow = std::make_shared<SlowMoves>(store);
        runner = std::make_unique<ImportRunner>(slow, loop, loop);
        attach(*runner);
        files.clear();
        finished.clear();
        store->removeItem(destination);
        store->staging = Url::file("/zwischen/staging");
        file("A.JPG", "aaaa");
        const Url elsewhere = Url::file("/archiv");
        slow->meanwhile = [&] {
            runner->abandon();
            loop.settle();
            store->staging = Url::file(path);
            EXPECT_TRUE(runner->isWindingUp(elsewhere)) << path;
            EXPECT_FALSE(runner->start({files.begin(), files.end()}, elsewhere, {})) << path;
            store->staging = Url::file("/zwischen2");
            EXPECT_FALSE(runner->isWindingUp(elsewhere)) << path;
            EXPECT_EQ(runner->stagingDirectories(), std::vector{Url::file("/zwischen/staging")});
        };
        ASSERT_TRUE(start());
        loop.settle();
        EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}})) << path;
        EXPECT_FALSE(store->folders.contains("/zwischen/staging")) << path;
        EXPECT_FALSE(runner->isWindingUp(elsewhere)) << path;
        ASSERT_TRUE(runner->start({files.begin(), files.end()}, elsewhere, {})) << path;
        loop.settle();
        EXPECT_EQ(finished.size(), 1U) << path;
    }
}

TEST_F(ImportRunnerTest, TellsOfAFileBeforeItsBytesCount) {
    file("A.JPG", "aaaa");
    const auto cut = file("B.JPG", "bb");
    cut->cameraSize = 3;
    file("C.CR3", "c");
    store->folders.insert("/bilder");
    store->files["/bilder/CR3"] = "in the way";
    std::vector<std::pair<std::int64_t, std::int64_t>> counted;
    runner->onLog = [&](const std::string& line) {
        log.push_back(line);
        const Progress& progress = runner->progress();
        counted.emplace_back(progress.done + progress.failed, progress.bytesDone);
        EXPECT_EQ(store->files.contains(staging.appending("B.JPG").path), log.size() == 2) << line;
    };
    runAll({.byType = true});
    EXPECT_EQ(log[1], "✗ B.JPG: Größe stimmt nicht (2 statt 3 Bytes)");
    EXPECT_TRUE(log[2].starts_with("Kann Ordner nicht anlegen: ")) << log[2];
    EXPECT_EQ(counted,
              (std::vector<std::pair<std::int64_t, std::int64_t>>{{1, 0}, {2, 4}, {2, 7}}));
    EXPECT_EQ(finished[0].first, (Progress{.total = 3, .done = 1, .failed = 2, .bytesDone = 7}));
}

TEST_F(ImportRunnerTest, TellsWhyAFolderIsUnreadableWhateverItsName) {
    file("../Bilder", "")->knownObstacle = Error{"Ordner ../Bilder ist nicht lesbar"};
    runAll();
    EXPECT_EQ(log, (Lines{"✗ ../Bilder: Ordner ../Bilder ist nicht lesbar"}));
}

TEST_F(ImportRunnerTest, HasNoCurrentFileOnceAbandoned) {
    file("A.JPG", "aaaa");
    ASSERT_TRUE(start());
    while (!runner->progress().isTransferring)
        ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    EXPECT_EQ(runner->progress().currentName, "A.JPG");
    runner->abandon();
    EXPECT_EQ(runner->progress(), Progress{.total = 1});
    loop.settle();
}

TEST_F(ImportRunnerTest, RefusesAFreeNameThatIsTooLong) {
    const std::string name = std::string(251, 'a') + ".JPG";
    store->files["/bilder/" + name] = "other";
    file(name, "aaaa");
    file("B.JPG", "bb");
    runAll();
    EXPECT_EQ(log, (Lines{"✗ " + name +
                              ": Der Name ist vergeben, und mit einer Nummer dahinter wäre er zu "
                              "lang",
                          "✓ bilder/B.JPG  (" + formatBytes(2) + ")"}));
    EXPECT_EQ(files[0]->downloads, 0);
}

TEST_F(ImportRunnerTest, TakesATakenNameForAnotherFileWhateverItsSize) {
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder/JPG")));
    store->files["/bilder/JPG/A.JPG"] = "bbbb";
    file("A.JPG", "aaaa");
    runAll({.byType = true});
    EXPECT_EQ(log, (Lines{"ℹ︎ A.JPG existiert schon mit anderem Inhalt → gespeichert als A_1.JPG",
                          "✓ JPG/A_1.JPG  (" + formatBytes(4) + ")"}));
    EXPECT_EQ(finished[0].first, (Progress{.total = 1, .done = 1, .bytesDone = 4}));
    EXPECT_EQ(store->tree(destination),
              (Tree{{"JPG/", ""}, {"JPG/A.JPG", "bbbb"}, {"JPG/A_1.JPG", "aaaa"}}));
}

TEST_F(ImportRunnerTest, IgnoresACompletionAfterTheEnd) {
    file("A.JPG", "aaaa");
    runAll();
    const auto before = reports.size();
    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(reports.size(), before);
    EXPECT_EQ(finished.size(), 1);
    EXPECT_EQ(log.size(), 1);
}

TEST_F(ImportRunnerTest, IgnoresACompletionOfAnEarlierRun) {
    const auto old = file("A.JPG", "aaaa");
    old->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    runner->abandon();
    loop.settle();
    files.clear();
    const auto fresh = file("B.JPG", "bb");
    fresh->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    old->deliver();
    loop.settle();
    EXPECT_EQ(log, Lines());
    EXPECT_EQ(runner->progress().currentName, "B.JPG");
    fresh->deliver();
    loop.settle();
    EXPECT_EQ(finished.size(), 1);
    EXPECT_EQ(store->tree(destination), (Tree{{"B.JPG", "bb"}}));
}

TEST_F(ImportRunnerTest, SaysNothingMoreOnceAbandoned) {
    file("A.JPG", "aaaa")->holdsBack = true;
    file("B.JPG", "bb");
    ASSERT_TRUE(start());
    loop.settle();
    const auto before = reports.size();
    runner->abandon();
    EXPECT_FALSE(runner->isRunning());
    EXPECT_EQ(loop.timers(), 0);
    files[0]->deliver();
    loop.advance(Duration(10));
    EXPECT_EQ(reports.size(), before);
    EXPECT_TRUE(finished.empty());
    EXPECT_EQ(log, Lines());
    EXPECT_EQ(files[1]->downloads, 0);
}

TEST_F(ImportRunnerTest, MovesNothingOnceAbandoned) {
    file("A.JPG", "aaaa");
    ASSERT_TRUE(start());
    while (!runner->progress().isTransferring)
        ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
    runner->abandon();
    store->files[staging.path + "/A.JPG"] = "half";
    loop.settle();
    EXPECT_EQ(store->files.count("/bilder/A.JPG"), 0);
}

TEST_F(ImportRunnerTest, TellsWhereItStages) {
    using Folders = std::vector<Url>;
    const Url other = Url::file("/archiv");
    file("A.JPG", "aaaa")->holdsBack = true;
    EXPECT_EQ(runner->stagingDirectories(), Folders());
    ASSERT_TRUE(start());
    EXPECT_EQ(runner->stagingDirectories(), Folders{staging});
    runner->abandon();
    EXPECT_EQ(runner->stagingDirectories(), Folders{staging});
    ASSERT_TRUE(runner->start({files[0]}, other, {}));
    EXPECT_EQ(runner->stagingDirectories(), (Folders{store->stagingDirectory(other), staging}));
    loop.settle();
    EXPECT_EQ(runner->stagingDirectories(), Folders{store->stagingDirectory(other)});
    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(runner->stagingDirectories(), Folders());
}

TEST_F(ImportRunnerTest, ClearsTheStagingFolderOnceAbandoned) {
    int settled = 0;
    std::optional<std::string> arrived;
    runner->onSettled = [&](const auto& line) {
        ++settled;
        arrived = line;
    };
    file("A.JPG", "aaaa")->holdsBack = true;
    EXPECT_TRUE(runner->isSettled());
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_FALSE(runner->isSettled());
    files[0]->grow(2);
    runner->abandon();
    EXPECT_FALSE(runner->isSettled());
    EXPECT_EQ(settled, 0);
    EXPECT_TRUE(store->fileExists(staging.appending("A.JPG"))) << "not on the main queue";
    loop.settle();
    EXPECT_TRUE(runner->isSettled());
    EXPECT_EQ(settled, 1);
    EXPECT_EQ(arrived, std::nullopt);
    EXPECT_FALSE(store->fileExists(staging));

    runner->abandon();
    loop.settle();
    EXPECT_EQ(settled, 1) << "there was no run";
}

TEST_F(ImportRunnerTest, WaitsForTheFileOnItsWayWhenAbandoned) {
    const auto slow = std::make_shared<SlowMoves>(store);
    runner = std::make_unique<ImportRunner>(slow, loop, loop);
    attach(*runner);
    int settled = 0;
    std::optional<std::string> arrived;
    runner->onSettled = [&](const auto& line) {
        ++settled;
        arrived = line;
    };
    file("A.JPG", "aaaa");
    file("B.JPG", "bb");
    bool wasSettled = true;
    bool startedMeanwhile = true;
    std::string refusal;
    Tree staged;
    slow->meanwhile = [&] {
        runner->abandon();
        loop.advance(Duration(60));
        wasSettled = runner->isSettled();
        const auto again = start();
        startedMeanwhile = again.has_value();
        if (!again) refusal = again.error().message;
        staged = store->tree(staging);
    };
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_FALSE(wasSettled);
    EXPECT_FALSE(startedMeanwhile);
    EXPECT_EQ(refusal, "Es läuft schon ein Import.");
    EXPECT_EQ(staged, (Tree{{"A.JPG", "aaaa"}}));
    EXPECT_EQ(settled, 1);
    EXPECT_EQ(arrived, "✓ bilder/A.JPG  (" + formatBytes(4) + ")");
    EXPECT_TRUE(finished.empty());
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}}));

    files.erase(files.begin());
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
}

TEST_F(ImportRunnerTest, RefusesAnotherRunWhileOneIsUnderWay) {
    file("A.JPG", "aaaa")->holdsBack = true;
    ASSERT_TRUE(start());
    loop.settle();
    EXPECT_FALSE(start());
    files[0]->deliver();
    loop.settle();
    EXPECT_EQ(finished.size(), 1);
    EXPECT_EQ(store->tree(destination), (Tree{{"A.JPG", "aaaa"}}));
}

TEST_F(ImportRunnerTest, LetsAnyCallbackDestroyIt) {
    const auto conflict = [this] {
        store = std::make_shared<MemoryFileStore>();
        ASSERT_TRUE(store->createDirectory(destination));
        store->files["/bilder/A.JPG"] = "other";
        runner = std::make_unique<ImportRunner>(store, loop, loop);
        files.clear();
        file("A.JPG", "aaaa");
        file("..", "");
    };
    for (int call = 0; call < 7; ++call) {
        conflict();
        int calls = 0;
        const auto destroy = [&] {
            if (calls++ == call) runner.reset();
        };
        runner->onLog = [&](const std::string&) { destroy(); };
        runner->onProgress = [&](const Progress&) { destroy(); };
        runner->onFinish = [&](const Progress&, bool) { destroy(); };
        ASSERT_TRUE(start());
        loop.advance(Duration(1));
        EXPECT_EQ(runner, nullptr) << call;
        EXPECT_EQ(calls, call + 1) << "nothing follows";
        loop.settle();
    }
}

TEST_F(ImportRunnerTest, LeavesPendingAnswersWithoutEffectWhenItIsGone) {
    const auto held = file("A.JPG", "aaaa");
    held->holdsBack = true;
    for (int answers = 0; answers < 4; ++answers) {
        runner = std::make_unique<ImportRunner>(store, loop, loop);
        attach(*runner);
        ASSERT_TRUE(start());
        for (int step = 0; step < answers; ++step) {
            if (!loop.stepMain()) loop.stepBackground();
        }
        if (held->downloads > 0) held->deliver();
        runner.reset();
        loop.advance(Duration(2));
    }
    EXPECT_TRUE(finished.empty());
    EXPECT_EQ(log, Lines());
}

TEST_F(ImportRunnerTest, LetsNoFalseNameReachAFileSystem) {
    const struct {
        std::string name;
        std::string shown;
    } cases[] = {
        {"", ""},
        {".", "."},
        {"..", ".."},
        {"../evil.jpg", "../evil.jpg"},
        {"/etc/passwd", "/etc/passwd"},
        {"a/b.jpg", "a/b.jpg"},
        {std::string("a\0b.jpg", 7), "a␀b.jpg"},
        {"a\nb.jpg", "a␊b.jpg"},
        {"\x1b[2J.jpg", "␛[2J.jpg"},
        {"a\x7f.jpg", "a␡.jpg"},
        {std::string(256, 'x'), std::string(256, 'x')},
        {"a.\nb", "a.␊b"},
    };
    for (const auto& [name, shown] : cases) {
        files.clear();
        log.clear();
        finished.clear();
        file(name, "evil");
        file("B.JPG", "bb");
        runAll({.byDate = true, .byType = true});
        ASSERT_EQ(log.size(), 2) << shown;
        EXPECT_EQ(log[0], "✗ " + shown + ": Ungültiger Dateiname");
        EXPECT_EQ(files[0]->downloads, 0) << shown;
        EXPECT_EQ(finished[0].first,
                  (Progress{.total = 2, .done = 1, .failed = 1, .bytesDone = 6}));
        store->removeItem(destination);
    }
}

TEST_F(ImportRunnerTest, RefusesATypeFolderLongerThanAFileSystemAllows) {
    // Its upper case takes one byte more per letter.
    std::string name = "a.";
    for (int i = 0; i < 120; ++i) name += "ŉ";
    file(name, "a");
    runAll({.byType = true});
    EXPECT_EQ(finished[0].first.failed, 1);
    finished.clear();
    runAll({.byType = false});
    EXPECT_EQ(finished[0].first.done, 1);
}

TEST_F(ImportRunnerTest, CopiesNamesThatAreNotUtf8AndShowsReplacements) {
    file("M\xFCll.JPG", "aaaa");
    runAll();
    EXPECT_EQ(store->tree(destination), (Tree{{"M\xFCll.JPG", "aaaa"}}));
    EXPECT_EQ(log, (Lines{"✓ bilder/M\uFFFDll.JPG  (" + formatBytes(4) + ")"}));
}

TEST_F(ImportRunnerTest, SurvivesALongRowOfFilesThatFailAtOnce) {
    for (int i = 0; i < 200'000; ++i) file("..", "x");
    runAll();
    EXPECT_EQ(finished[0].first.failed, 200'000);
}

TEST_F(ImportRunnerTest, HasOneFileInFlightAtATime) {
    for (int i = 0; i < 5; ++i) file("A" + std::to_string(i), "a")->holdsBack = true;
    ASSERT_TRUE(start());
    for (int begun = 1; begun <= 5; ++begun) {
        loop.settle();
        EXPECT_EQ(std::ranges::count(files, 1, &FakeCameraFile::downloads), begun);
        files[static_cast<std::size_t>(begun - 1)]->deliver();
    }
    loop.settle();
    EXPECT_EQ(finished.size(), 1);
}

class FailingImportRunnerTest : public ImportRunnerTest,
                                public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    /// Runs an import of two files in which the store's call number `call` fails; false once
    /// the import makes fewer calls.
    bool runWithFailure(std::size_t call) {
        store = std::make_shared<MemoryFileStore>();
        const auto failing = std::make_shared<FailingFileStore>(store);
        failing->failAt = call;
        std::tie(failing->forGood, failing->failsAfterwards) = GetParam();
        failing->queriesCount = true;
        runner = std::make_unique<ImportRunner>(failing, loop, loop);
        attach(*runner);
        files.clear();
        log.clear();
        finished.clear();
        file("A.JPG", "aaaa");
        file("B.JPG", "bb");
        started = start({.byType = true}).has_value();
        loop.settle();
        return failing->calls > call;
    }

    bool claims(const FakeCameraFile& wanted) const {
        return std::ranges::any_of(log, [&](const std::string& line) {
            return line.starts_with("✓ JPG/" + *wanted.cameraName);
        });
    }

    bool started = false;
};

TEST_P(FailingImportRunnerTest, NeverClaimsAFileThatIsNotThere) {
    std::size_t call = 0;
    for (; runWithFailure(call); ++call) {
        SCOPED_TRACE(call);
        ASSERT_EQ(finished.size(), started ? 1 : 0);
        for (const auto& wanted : files) {
            const auto landed = store->files.find("/bilder/JPG/" + *wanted->cameraName);
            const bool there = landed != store->files.end();
            EXPECT_TRUE(there || !claims(*wanted));
            if (there) {
                EXPECT_EQ(landed->second, wanted->contents);
            }
        }
        if (started && log.size() < 2) {
            EXPECT_EQ(finished[0].first.failed, 1) << "only a folder that fails ends a run early";
        }
    }
    EXPECT_GT(call, 10) << "the calls of the import were counted";
}

INSTANTIATE_TEST_SUITE_P(OnceOrForGoodBeforeOrAfterTheFact, FailingImportRunnerTest,
                         testing::Combine(testing::Bool(), testing::Bool()));

TEST_F(ImportRunnerTest, KeepsAnyNamesInsideTheDestination) {
    EXPECT_TRUE(rc::check([this](const std::set<std::string>& names, bool byDate, bool byType) {
        store = std::make_shared<MemoryFileStore>();
        runner = std::make_unique<ImportRunner>(store, loop, loop);
        attach(*runner);
        files.clear();
        finished.clear();
        log.clear();
        std::int64_t size = 0;
        for (const std::string& name : names) size += std::ssize(file(name, name)->contents);
        RC_ASSERT(start({.byDate = byDate, .byType = byType}).has_value());
        loop.settle();
        RC_ASSERT(finished.size() == 1U);
        const Progress& end = finished[0].first;
        RC_ASSERT(end.done + end.failed == std::ssize(names));
        RC_ASSERT(end.bytesDone == size);
        RC_ASSERT(std::ssize(store->files) == end.done);
        for (const auto& [path, contents] : store->files) {
            RC_ASSERT(path.starts_with("/bilder/"));
            RC_ASSERT(path.find("/../") == std::string::npos);
        }
    }));
}

}  // namespace
}  // namespace bildkurier
