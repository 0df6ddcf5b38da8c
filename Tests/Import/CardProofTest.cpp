// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardProof.h"
#include "FakeCameraFile.h"
#include "FakeRunLock.h"
#include "FakeSSHKeyring.h"
#include "ManualRunLoop.h"
#include "MemoryContentReader.h"
#include "ProofSummary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Lines = std::vector<std::string>;
using Outcome = CardProof::Outcome;

class CardProofTest : public testing::Test {
protected:
    CardProofTest() {
        store->folders.insert({"/card", "/dest", "/cache"});
        proof->onFinding = [this](const auto& finding) { found.push_back(findingLine(finding)); };
        proof->onNewServer = [this](const auto& fingerprint) { servers.push_back(fingerprint); };
        proof->onProgress = [this](const auto& progress, const auto&) {
            reports.push_back(progress);
        };
        proof->onFinish = [this](const auto& outcome) { outcomes.push_back(outcome); };
    }

    std::shared_ptr<FakeCameraFile> file(std::optional<std::string> name, std::string contents) {
        return files.emplace_back(
            std::make_shared<FakeCameraFile>(store, std::move(name), std::move(contents)));
    }

    /// One that can be read where it is.
    std::shared_ptr<FakeCameraFile> cardFile(const std::string& name, const std::string& contents) {
        auto made = file(name, contents);
        const std::string path = std::to_string(files.size()) + name;
        store->files["/card/" + path] = contents;
        made->knownPlace = PlacedFile{.folder = Url::file("/card"), .path = path};
        return made;
    }

    void start(bool content = true) {
        proof->start({.files = {files.begin(), files.end()},
                      .overlaps = [this](const Url&) { return isOverlapping; },
                      .hasSameFiles =
                          [this] {
                              comparedBefore = reader->comparisons;
                              return !hasCardChanged;
                          },
                      .destination = destination,
                      .content = content,
                      .isWholeCard = isWholeCard,
                      .others = others});
    }

    /// What it came to when all is done; nothing may be left behind.
    Result<Outcome> run(bool content = true) {
        const Tree card = store->tree(Url::file("/card"));
        const Tree there = store->tree(Url::file("/dest"));
        outcomes.clear();
        start(content);
        EXPECT_TRUE(outcomes.empty());
        loop.settle();
        EXPECT_EQ(outcomes.size(), 1U);
        EXPECT_FALSE(proof->isRunning());
        EXPECT_FALSE(lock->held);
        EXPECT_EQ(store->tree(Url::file("/cache")), Tree{});
        EXPECT_EQ(store->tree(Url::file("/card")), card);
        EXPECT_EQ(store->tree(Url::file("/dest")), there);
        EXPECT_EQ(loop.timers(), 0U);
        return outcomes.empty() ? Result<Outcome>(failure("never finished")) : outcomes.front();
    }

    std::shared_ptr<MemoryFileStore> store = std::make_shared<MemoryFileStore>();
    std::shared_ptr<MemoryContentReader> reader = std::make_shared<MemoryContentReader>(store);
    std::shared_ptr<FakeSSHKeyring> keyring = std::make_shared<FakeSSHKeyring>();
    std::shared_ptr<FakeRunLock> lock = std::make_shared<FakeRunLock>();
    ManualRunLoop loop;
    std::unique_ptr<CardProof> proof =
        std::make_unique<CardProof>(CardProof::Collaborators{.reader = reader,
                                                             .fileStore = store,
                                                             .keyring = keyring,
                                                             .runLock = lock,
                                                             .staging = Url::file("/cache/verify")},
                                    loop, loop);
    std::vector<std::shared_ptr<FakeCameraFile>> files;
    Url destination = Url::file("/dest");
    bool isOverlapping = false;
    bool hasCardChanged = false;
    int comparedBefore = -1;  ///< the files of the card were counted again
    bool isWholeCard = true;
    OtherFiles others;
    Lines found;
    Lines servers;
    std::vector<ImportRunner::Progress> reports;
    std::vector<Result<Outcome>> outcomes;
};

TEST_F(CardProofTest, FindsThatAllIsThere) {
    cardFile("A.JPG", "aa");
    cardFile("B.JPG", "bbb");
    store->files["/dest/JPG/a.jpg"] = "aa";
    store->files["/dest/B.JPG"] = "bbb";
    EXPECT_EQ(run(), (Outcome{.files = 2, .bytes = 5, .present = 2, .content = true}));
    EXPECT_EQ(reader->comparisons, 2);
    EXPECT_EQ(run(false), (Outcome{.files = 2, .bytes = 5, .present = 2}));
    EXPECT_EQ(reader->comparisons, 2);
    EXPECT_EQ(found, Lines{});
}

TEST_F(CardProofTest, TellsOfFoldersOfTheDestinationThatCannotBeRead) {
    Lines folders;
    proof->onUnreadable = [&](const std::string& folder) { folders.push_back(folder); };
    reader->unreadableFolders = {"a", "b/c"};
    cardFile("A.JPG", "aa");
    EXPECT_EQ(run(false), (Outcome{.files = 1, .bytes = 2, .missing = 1}));
    EXPECT_EQ(folders, (Lines{"a", "b/c"}));
}

TEST_F(CardProofTest, SaysWhyTheDestinationOfAWholeCardMayBeLessSafeThanItSeems) {
    reader->onCautions = [](const Url& there, const std::optional<Url>& card) {
        return Lines{there.path + " " + (card ? card->path : "none")};
    };
    const auto cautions = [this] {
        Lines told;
        proof->onCaution = [&](const std::string& caution) { told.push_back(caution); };
        EXPECT_TRUE(run(false));
        return told;
    };
    EXPECT_EQ(cautions(), Lines{"/dest none"});
    cardFile("A.JPG", "aa");
    EXPECT_EQ(cautions(), Lines{"/dest /card"});
    isWholeCard = false;
    EXPECT_EQ(cautions(), Lines{});
    isWholeCard = true;
    files.clear();
    file("A.JPG", "aa");
    EXPECT_EQ(cautions(), Lines{"/dest none"});
}

TEST_F(CardProofTest, KeepsInMindWhatItDoesNotLookAt) {
    others = {.kinds = {{"CR4", 2}}, .hidden = {{".alt", 1}}};
    cardFile("A.JPG", "aa");
    store->files["/dest/A.JPG"] = "aa";
    for (const bool content : {true, false}) {
        EXPECT_EQ(
            run(content),
            (Outcome{.files = 1, .bytes = 2, .present = 1, .content = content, .others = others}));
    }
}

TEST_F(CardProofTest, TellsOfEachFileThatIsNotThere) {
    cardFile("A.JPG", "aa");
    cardFile("B.JPG", "bbb");
    cardFile("C.JPG", "c");
    store->files["/dest/A.JPG"] = "AA";
    store->files["/dest/C.JPG"] = "c";
    EXPECT_EQ(
        run(),
        (Outcome{.files = 3, .bytes = 6, .present = 1, .missing = 1, .twins = 1, .content = true}));
    EXPECT_EQ(found, (Lines{"✗ A.JPG  (2 Byte): Zwilling: Was am Ziel so heißt und so groß ist, "
                            "hat anderen Inhalt",
                            "✗ B.JPG  (3 Byte): fehlt am Ziel"}));
}

TEST_F(CardProofTest, TakesWhatItCannotReadForNotProved) {
    cardFile("A.JPG", "aa");
    file("DCIM", "")->knownObstacle = Error{"Ordner DCIM ist nicht lesbar"};
    file(std::nullopt, "cc");
    file("D.JPG", "dd")->error = Error{"Kabel ab"};
    for (const std::string path : {"/dest/A.JPG", "/dest/DCIM", "/dest/D.JPG"})
        store->files[path] = path == "/dest/D.JPG" ? "dd" : path == "/dest/DCIM" ? "" : "aa";
    reader->unreadable = {"/dest/A.JPG"};
    EXPECT_EQ(run(), (Outcome{.files = 4, .bytes = 6, .unproved = 4, .content = true}));
    EXPECT_EQ(found, (Lines{"✗ DCIM  (0 KB): nicht prüfbar: Ordner DCIM ist nicht lesbar",
                            "✗ (ohne Namen)  (2 Byte): nicht prüfbar: Datei ohne Namen",
                            "✗ A.JPG  (2 Byte): nicht prüfbar: A.JPG nicht lesbar",
                            "✗ D.JPG  (2 Byte): nicht prüfbar: Kabel ab"}));
}

TEST_F(CardProofTest, LoadsWhatTheCameraDoesNotShow) {
    for (const std::string name : {"A.JPG", "B.JPG", "C.JPG"}) {
        file(name, name);
        store->files["/dest/" + name] = name;
    }
    const auto absent = file("D.JPG", "dd");
    const auto truncated = file("E.JPG", "ee");
    truncated->cameraSize = 3;
    store->files["/dest/E.JPG"] = "eee";
    const auto outcome = run();
    EXPECT_EQ(
        outcome,
        (Outcome{
            .files = 5, .bytes = 20, .present = 3, .missing = 1, .twins = 1, .content = true}));
    EXPECT_EQ(absent->downloads, 0);
    EXPECT_EQ(files.front()->downloads, 1);
}

TEST_F(CardProofTest, DoesNotTakeAnotherFileForTheOneThatWasToBeLoaded) {
    file("A.JPG", "aa")->savedAs = "sonst.JPG";
    store->files["/dest/A.JPG"] = "aa";
    EXPECT_EQ(run(), (Outcome{.files = 1, .bytes = 2, .unproved = 1, .content = true}));
}

TEST_F(CardProofTest, DownloadsInBatchesFromAServer) {
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    for (int n = 0; n < 200; ++n) {
        const std::string name = "IMG_" + std::to_string(1000 + n) + ".JPG";
        cardFile(name, name);
        store->files["/dest/" + name] = name;
    }
    store->files["/dest/IMG_1007.JPG"] = "andersBildhi";
    reader->unreadable = {"/dest/IMG_1009.JPG"};
    EXPECT_EQ(run(), (Outcome{.files = 200,
                              .bytes = 2400,
                              .present = 198,
                              .twins = 1,
                              .unproved = 1,
                              .content = true}));
    EXPECT_EQ(reader->fetches, 4);
    EXPECT_EQ(reader->copied, 199U);
    EXPECT_LE(reader->mostCopies, 64U);
}

TEST_F(CardProofTest, TakesOneFileOfTheDestinationForAllThatEqualIt) {
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    for (const std::string contents : {"aa", "aa", "bb"}) cardFile("A.JPG", contents);
    store->files["/dest/A.JPG"] = "aa";
    EXPECT_EQ(run(), (Outcome{.files = 3, .bytes = 6, .present = 2, .twins = 1, .content = true}));
    EXPECT_EQ(reader->copied, 1U);
    EXPECT_EQ(run(false), (Outcome{.files = 3, .bytes = 6, .present = 1, .missing = 2}));
    EXPECT_EQ(found.back(), "✗ A.JPG  (2 Byte): ist auf der Karte öfter als am Ziel");
}

TEST_F(CardProofTest, SaysWhyTheDestinationCannotBeRead) {
    cardFile("A.JPG", "aa");
    reader->refusal = Error{"Keine Berechtigung"};
    EXPECT_EQ(run().error().message, "Der Zielordner ist nicht lesbar: Keine Berechtigung");
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    EXPECT_EQ(run().error().message, "Keine Berechtigung");
}

TEST_F(CardProofTest, DoesNotTakeTheCardItselfForTheDestination) {
    cardFile("A.JPG", "aa");
    store->files["/dest/A.JPG"] = "aa";
    isOverlapping = true;
    EXPECT_EQ(run().error().message,
              "Karte und Zielordner liegen ineinander; bitte einen anderen Zielordner wählen.");
}

TEST_F(CardProofTest, LetsNoImportRunMeanwhile) {
    cardFile("A.JPG", "aa");
    start();
    EXPECT_TRUE(lock->held);
    loop.settle();
    lock->takenByAnother = true;
    EXPECT_EQ(run().error().message, "Es läuft schon ein Import.");
}

TEST_F(CardProofTest, ClearsWhatAnEarlierRunHasLeft) {
    cardFile("A.JPG", "aa");
    store->folders.insert("/cache/verify");
    store->files["/cache/verify/alt"] = "x";
    EXPECT_EQ(run(), (Outcome{.files = 1, .bytes = 2, .missing = 1, .content = true}));
}

TEST_F(CardProofTest, BelievesNoCopiesThatCannotBeRemoved) {
    file("A.JPG", "aa");
    store->files["/dest/A.JPG"] = "aa";
    store->folders.insert("/cache/verify");
    store->files["/cache/verify/karte-0"] = "aa";
    store->kept = {"/cache/verify"};
    start();
    loop.settle();
    ASSERT_EQ(outcomes.size(), 1U);
    ASSERT_FALSE(outcomes.front());
    EXPECT_EQ(outcomes.front().error().message,
              "Der Ordner für Kopien „/cache/verify“ lässt sich nicht leeren.");
    EXPECT_EQ(files.front()->downloads, 0);
    EXPECT_EQ(reader->comparisons, 0);
    EXPECT_FALSE(lock->held);
}

TEST_F(CardProofTest, ProvesNothingOfACardThatHasChangedInTheEnd) {
    for (int n = 0; n < 300; ++n) {
        const std::string name = "IMG_" + std::to_string(1000 + n) + ".JPG";
        cardFile(name, "aa");
        store->files["/dest/" + name] = "aa";
    }
    const Outcome all{.files = 300, .bytes = 600, .present = 300, .content = true};
    EXPECT_EQ(run(), all);
    EXPECT_EQ(comparedBefore, 300);
    hasCardChanged = true;
    for (const bool content : {false, true}) {
        Outcome outdated = all;
        outdated.content = content;
        outdated.hasCardChanged = true;
        EXPECT_EQ(run(content), outdated);
        EXPECT_EQ(found, Lines{});
    }
}

TEST_F(CardProofTest, TellsHowFarItIsWhileItLoadsFromACamera) {
    file("A.JPG", std::string(600, 'a'))->holdsBack = true;
    file("B.JPG", std::string(400, 'b'))->holdsBack = true;
    for (const auto& each : files) store->files["/dest/" + *each->cameraName] = each->contents;
    start();
    // To load all is half of the work, to compare it the other half.
    const auto shows = [&](std::int64_t bytes) {
        loop.advance(CardProof::reportInterval);
        EXPECT_EQ(reports.back(), (ImportRunner::Progress{.total = 2, .currentBytes = bytes}));
    };
    shows(0);
    files[0]->grow(200);
    shows(100);
    files[0]->grow(400);
    shows(200);
    files[0]->deliver();
    shows(300);
    files[1]->grow(200);
    shows(400);
    files[1]->deliver();
    loop.settle();
    EXPECT_EQ(outcomes.front(),
              (Outcome{.files = 2, .bytes = 1'000, .present = 2, .content = true}));
}

TEST_F(CardProofTest, TellsHowFarItIsWhileItDownloadsFromAServer) {
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    for (const std::string name : {"A.JPG", "B.JPG"}) {
        cardFile(name, std::string(500, name[0]));
        store->files["/dest/" + name] = std::string(500, name[0]);
    }
    reader->onCopied = [this] { loop.advance(CardProof::reportInterval); };
    EXPECT_EQ(run(), (Outcome{.files = 2, .bytes = 1'000, .present = 2, .content = true}));
    EXPECT_EQ(reports, (std::vector<ImportRunner::Progress>{{.total = 2, .currentBytes = 250},
                                                            {.total = 2, .currentBytes = 500}}));
}

TEST_F(CardProofTest, TellsHowFarItIsWhileItCompares) {
    cardFile("A.JPG", "aaaa");
    cardFile("B.JPG", "bb");
    for (const auto& each : files) store->files["/dest/" + *each->cameraName] = each->contents;
    reader->onStep = [this] { loop.advance(CardProof::reportInterval); };
    EXPECT_EQ(run(), (Outcome{.files = 2, .bytes = 6, .present = 2, .content = true}));
    EXPECT_EQ(reports, (std::vector<ImportRunner::Progress>{{.total = 2, .currentBytes = 4},
                                                            {.total = 2, .currentBytes = 6}}));
}

TEST_F(CardProofTest, CountsWhatIsDone) {
    for (int n = 0; n < 64; ++n) cardFile("A.JPG", "aa");
    file("B.JPG", "bbbb")->holdsBack = true;
    store->files["/dest/A.JPG"] = "aa";
    store->files["/dest/B.JPG"] = "bbbb";
    start();
    loop.advance(CardProof::reportInterval);
    EXPECT_EQ(reports,
              (std::vector<ImportRunner::Progress>{{.total = 65, .done = 64, .bytesDone = 128}}));
    files.back()->deliver();
    loop.settle();
    EXPECT_EQ(outcomes.size(), 1U);
}

TEST_F(CardProofTest, HasSeveralBatchesInFlight) {
    for (int n = 0; n < 300; ++n) {
        const std::string name = "IMG_" + std::to_string(1000 + n) + ".JPG";
        cardFile(name, name);
        store->files["/dest/" + name] = name;
    }
    start();
    std::size_t most = 0;
    while (outcomes.empty()) {
        const bool stepped = loop.stepMain() || loop.stepBackground();
        ASSERT_TRUE(stepped);
        most = std::max(most, loop.backgroundTasks());
    }
    EXPECT_EQ(most, 4U);
    EXPECT_EQ(reader->comparisons, 300);
}

TEST_F(CardProofTest, TellsOfAServerThatWasNeverMet) {
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    cardFile("A.JPG", "aa");
    store->files["/dest/A.JPG"] = "aa";
    keyring->key = "ssh-ed25519 AAAA";
    reader->onListing = [this] { keyring->hosts[{"nas", std::nullopt}] = "SHA256:neu (ED25519)"; };
    for (int n = 0; n < 2; ++n) EXPECT_TRUE(run()->isComplete());
    EXPECT_EQ(servers, Lines{"SHA256:neu (ED25519)"});
}

TEST_F(CardProofTest, SaysThatThereIsNoFolderForCopies) {
    cardFile("A.JPG", "aa");
    store->folders.erase("/cache");
    store->files["/cache"] = "x";
    EXPECT_EQ(run().error().message,
              "Der Ordner für Kopien lässt sich nicht anlegen: Dort liegt eine Datei.");
}

TEST_F(CardProofTest, CopiesOnlyWhatThereIsRoomFor) {
    destination = {.scheme = "sftp", .host = "nas", .path = "/dest"};
    cardFile("A.JPG", "aaaa");
    cardFile("B.JPG", "bb");
    cardFile("C.JPG", "ccccc");
    for (const auto& each : files) store->files["/dest/" + *each->cameraName] = each->contents;
    cardFile("D.JPG", "ddddddd");
    store->capacity = 209'715'200 + 4;
    EXPECT_EQ(
        run(),
        (Outcome{
            .files = 4, .bytes = 18, .present = 2, .missing = 1, .unproved = 1, .content = true}));
    EXPECT_EQ(found, (Lines{"✗ C.JPG  (5 Byte): nicht prüfbar: auf diesem Computer ist zu wenig "
                            "Platz für eine Kopie (209,7 MB nötig, 209,7 MB frei)",
                            "✗ D.JPG  (7 Byte): fehlt am Ziel"}));
    EXPECT_EQ(reader->fetches, 2);
    EXPECT_EQ(reader->mostCopies, 1U);
}

TEST_F(CardProofTest, AsksForRoomForWhatACameraHasToSend) {
    file("A.JPG", "aaaa");
    file("B.JPG", "bb");
    cardFile("C.JPG", "ccccc");
    for (const auto& each : files) store->files["/dest/" + *each->cameraName] = each->contents;
    store->capacity = 209'715'200 + 2;
    EXPECT_EQ(run(),
              (Outcome{.files = 3, .bytes = 11, .present = 2, .unproved = 1, .content = true}));
    EXPECT_EQ(files[0]->downloads, 0);
    store->capacity.reset();
    EXPECT_EQ(run(), (Outcome{.files = 3, .bytes = 11, .present = 3, .content = true}));
}

TEST_F(CardProofTest, SaysNothingMoreOnceItWasCancelled) {
    file("A.JPG", "aa")->holdsBack = true;
    cardFile("B.JPG", "bb");
    store->files["/dest/A.JPG"] = "aa";
    start();
    loop.settle();
    EXPECT_EQ(proof->stagingToClear(), Url::file("/cache/verify"));
    proof->cancel();
    files.front()->deliver();
    loop.settle();
    EXPECT_EQ(outcomes.size(), 0U);
    EXPECT_EQ(loop.timers(), 0U);
    EXPECT_FALSE(proof->isRunning());
    EXPECT_EQ(proof->stagingToClear(), Url::file("/cache/verify"));
}

TEST_F(CardProofTest, StopsWorkUnderWayWhenItGoes) {
    for (const std::string name : {"A.JPG", "B.JPG"}) {
        cardFile(name, name);
        store->files["/dest/" + name] = name;
    }
    start();
    while (!proof->stagingToClear()) {
        const bool stepped = loop.stepMain() || loop.stepBackground();
        ASSERT_TRUE(stepped);
    }
    ASSERT_TRUE(loop.stepBackground());
    ASSERT_TRUE(loop.stepMain());
    EXPECT_EQ(loop.backgroundTasks(), 1U);
    proof.reset();
    loop.settle();
    EXPECT_EQ(reader->comparisons, 0);
}

TEST(ProofOutcome, IsCompleteOnlyWhereEveryOneOfSomeFilesIsProved) {
    EXPECT_FALSE(Outcome{}.isComplete());
    EXPECT_TRUE((Outcome{.files = 2, .present = 2}).isComplete());
    EXPECT_FALSE((Outcome{.files = 2, .present = 1, .missing = 1}).isComplete());
    EXPECT_FALSE((Outcome{.files = 2, .present = 2, .unproved = 1}).isComplete());
    EXPECT_FALSE((Outcome{.files = 2, .present = 2, .hasCardChanged = true}).isComplete());
}

TEST(OthersLine, TellsWhatWasNotLookedAt) {
    const struct {
        OtherFiles others;
        std::string line;
    } cases[] = {
        {{}, ""},
        {{.kinds = {{"CR4", 1}}, .hidden = {}}, "1 Datei anderer Art (CR4)"},
        {{.kinds = {{"CR4", 2}}, .hidden = {}}, "2 Dateien anderer Art (CR4)"},
        {{.kinds = {{"A", 1}, {"PDF", 33}, {"Z", 1}}, .hidden = {}},
         "35 Dateien anderer Art (PDF, A, Z)"},
        {{.kinds = {{"A", 1}, {"B", 1}, {"C", 2}, {"D", 3}}, .hidden = {}},
         "7 Dateien anderer Art (D, C, A …)"},
        {{.kinds = {{"", 1}}, .hidden = {}}, "1 Datei anderer Art (ohne Endung)"},
        {{.kinds = {{"\n\xFF", 1}}, .hidden = {}}, "1 Datei anderer Art (␊\uFFFD)"},
        {{.kinds = {}, .hidden = {{".alt", 1}}}, "Verstecktes (.alt)"},
        {{.kinds = {{"CR4", 2}}, .hidden = {{".a", 1}, {".b\x1B", 1}, {".c", 3}, {".d", 1}}},
         "2 Dateien anderer Art (CR4), Verstecktes (.c, .a, .b␛ …)"},
    };
    for (const auto& [others, line] : cases)
        EXPECT_EQ(othersLine(others), line.empty() ? "" : "ℹ︎ Nicht geprüft: " + line + ".");
}

TEST(ProofSummary, ClosesAProofInOneSentence) {
    const struct {
        Outcome outcome;
        std::string line;
    } cases[] = {
        {{}, "✗ Nicht löschen: Auf der Karte ist keine Datei, die zu prüfen wäre."},
        {{.files = 1, .bytes = 2'000'000, .present = 1, .content = true},
         "✓ Die eine Datei (2 MB) ist am Ziel, Byte für Byte gleich."},
        {{.files = 20, .bytes = 2'000'000, .present = 20, .content = true},
         "✓ Alle 20 Dateien (2 MB) sind am Ziel, Byte für Byte gleich."},
        {{.files = 1, .bytes = 2'000'000, .present = 1, .content = true, .isWholeCard = false},
         "✓ Die eine geladene Datei (2 MB) ist am Ziel, Byte für Byte gleich. Die ganze Karte "
         "prüft verify --content."},
        {{.files = 20, .bytes = 2'000'000, .present = 20, .content = true, .isWholeCard = false},
         "✓ Alle 20 geladenen Dateien (2 MB) sind am Ziel, Byte für Byte gleich. Die ganze Karte "
         "prüft verify --content."},
        {{.files = 20, .bytes = 2'000'000, .present = 20},
         "✓ Alle 20 Dateien (2 MB) sind dem Namen und der Größe nach am Ziel. Den Inhalt "
         "vergleicht --content."},
        {{.files = 20, .bytes = 2'000'000, .present = 20, .hasCardChanged = true},
         "✗ Nicht löschen: Auf der Karte hat sich während der Prüfung etwas geändert; bitte noch "
         "einmal prüfen."},
        {{.files = 20, .bytes = 2'000'000, .present = 19, .missing = 1},
         "✗ Nicht löschen: am Ziel 19 von 20 Dateien (2 MB), 1 fehlt."},
        {{.files = 1, .bytes = 2'000'000, .missing = 1},
         "✗ Nicht löschen: am Ziel 0 von 1 Datei (2 MB), 1 fehlt."},
        {{.files = 3, .bytes = 2'000'000, .present = 1, .twins = 2, .content = true},
         "✗ Nicht löschen: am Ziel 1 von 3 Dateien (2 MB), 2 mit anderem Inhalt."},
        {{.files = 20,
          .bytes = 2'000'000,
          .present = 14,
          .missing = 3,
          .twins = 2,
          .unproved = 1,
          .content = true},
         "✗ Nicht löschen: am Ziel 14 von 20 Dateien (2 MB), 3 fehlen, 2 mit anderem Inhalt, "
         "1 nicht prüfbar."},
    };
    for (const auto& [outcome, line] : cases) EXPECT_EQ(proofSummary(outcome), line);
}

}  // namespace
}  // namespace bildkurier
