// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeServer.h"
#include "Formatting.h"
#include "ModelCommandTest.h"
#include "WatchCommand.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

namespace bildkurier {
namespace {

class WatchCommandTest : public ModelCommandTest {
protected:
    WatchCommandTest() {
        settings->storedByType = false;
        EXPECT_TRUE(store->createDirectory(Url::file("/bilder")));
    }

    void trust(const std::string& identity) {
        settings->storedAutoImport = true;
        settings->storedIdentity = identity;
        settings->storedName = "Kamera";
    }

    void begin(const std::optional<std::string>& wanted = {}) {
        make();
        if (wanted) model->trustWhenConnected(*wanted);
        makeCommand({.trust = wanted});
        command->begin();
        loop.settle();
    }

    void makeCommand(CommandLine options) {
        options.command = CommandLine::Command::watch;
        command = std::make_shared<WatchCommand>(std::move(options), settings, model, loop, report,
                                                 done());
    }

    std::shared_ptr<WatchCommand> command;
};

TEST_F(WatchCommandTest, WantsATrustedCamera) {
    const auto nobody = [] {};
    const auto forgotten = [this] { settings->storedAutoImport = true; };
    for (const auto& prepare : {std::function<void()>(nobody), std::function<void()>(forgotten)}) {
        prepare();
        ends.clear();
        begin();
        EXPECT_EQ(reported(),
                  (Lines{"error: Noch ist keine Kamera vertraut: bitte mit --trust eine nennen."}));
        expectEnd(ExitStatus::noCamera);
    }
}

TEST_F(WatchCommandTest, WantsWhatIsGivenToBeAFolder) {
    for (const Lines& cards : {Lines{"/dev/null"}, Lines{"/", "/dev/null"}}) {
        trust("serial:A");
        make();
        ends.clear();
        makeCommand({.cards = cards});
        command->begin();
        EXPECT_EQ(reported(), Lines{"error: Die Karte „/dev/null“ ist kein lesbarer Ordner."});
        expectEnd(ExitStatus::noCamera);
    }
}

TEST_F(WatchCommandTest, WaitsForAFolderGivenThatIsNotThereYetAndSaysSoOnce) {
    trust("serial:A");
    make();
    makeCommand({.cards = {"/", "/c\n"}});
    command->begin();
    loop.settle();
    const auto isTold = [](const std::string& line) { return line.contains("noch nicht da"); };
    const Lines lines = reported();
    EXPECT_EQ(lines.front(),
              "status: Der Ordner „/c␊“ ist noch nicht da; er wird eingelesen, sobald er es ist.");
    EXPECT_EQ(std::ranges::count_if(lines, isTold), 1);
    const auto card = attach("A");
    file(*card, "A.JPG", "aaaa");
    deliver(*card);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}}));
    EXPECT_EQ(std::ranges::count_if(reported(), isTold), 0);
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, WaitsForAFolderGivenThatHasGone) {
    trust("serial:A");
    make();
    const auto card = attach("A");
    file(*card, "A.JPG", "aaaa");
    makeCommand({.cards = {"/c"}});
    command->begin();
    deliver(*card);
    model->cameraBrowserDidRemove(card);
    loop.settle();
    EXPECT_TRUE(ends.empty());
    const auto again = returned(*card);
    file(*again, "B.JPG", "bb");
    deliver(*again);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, ImportsTheTrustedCameraEachTimeItIsConnected) {
    trust("serial:A");
    begin();
    EXPECT_EQ(reported(), (Lines{std::string("status: ") + ImportModel::searchingStatus}));

    const auto first = attach("A");
    file(*first, "A.JPG", "aaaa");
    deliver(*first);
    const Lines lines = reported();
    const Lines expected{
        "importing: 1/1 files, 4 bytes, 1 JPG", "✓ bilder/A.JPG  (" + formatBytes(4) + ")",
        "Fertig: 1 geladen (" + formatBytes(4) + ")", "finished: 1/1 done, 0 failed"};
    for (const auto& line : expected) EXPECT_EQ(std::ranges::count(lines, line), 1) << line;
    EXPECT_EQ(std::ranges::count(lines, "status: " + expected[2]), 0) << "it is in the log";
    EXPECT_GT(report.progressReports, 0);
    EXPECT_FALSE(report.progressCameFirst);
    model->cameraBrowserDidRemove(first);

    const auto again = returned(*first);
    file(*again, "B.JPG", "bb");
    deliver(*again);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}, {"B.JPG", "bb"}}));
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, LeavesOtherCamerasAlone) {
    trust("serial:A");
    begin();
    const auto other = attach("B");
    file(*other, "B.JPG", "bb");
    deliver(*other);
    EXPECT_EQ(report.lines.back(),
              "status: 1 neue Dateien (" + formatBytes(2) + ") bereit zum Import.");
    EXPECT_TRUE(store->tree(Url::file("/bilder")).empty());
}

TEST_F(WatchCommandTest, ImportsTheCameraItIsToTrustAtOnce) {
    begin("Kamera B");
    attach("A");
    const auto wanted = attach("B");
    file(*wanted, "B.JPG", "bb");
    deliver(*wanted);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"B.JPG", "bb"}}));
    EXPECT_EQ(settings->storedIdentity, "serial:B");
    EXPECT_TRUE(settings->storedAutoImport);
}

TEST_F(WatchCommandTest, SaysWhyACameraCannotBeTrustedYet) {
    for (const std::string wanted : {"Kamera A", "persistent:usb", "serial:B"}) {
        const auto held = camera("A", "persistent:usb");
        held->identityIsFinal = false;
        make();
        attached(held);
        model->trustWhenConnected(wanted);
        makeCommand({.trust = wanted});
        command->begin();
        loop.settle();
        EXPECT_EQ(std::ranges::count(reported(),
                                     "status: Die Kennung der Kamera Kamera A ist noch nicht "
                                     "bekannt: Ein anderes Programm benutzt sie, sie antwortet "
                                     "nicht, oder der angegebene Ordner ist leer."),
                  1);
        EXPECT_EQ(settings->storedIdentity, std::nullopt);
        held->deviceIdentity = "serial:A";
        held->formerIdentity = "persistent:usb";
        held->identityIsFinal = true;
        model->cameraBrowserDidIdentify(held);
        const bool isMeant = wanted != "serial:B";
        EXPECT_EQ(settings->storedIdentity,
                  isMeant ? std::optional<std::string>("serial:A") : std::nullopt);
        settings->storedIdentity.reset();
        settings->storedAutoImport = false;
    }
}

TEST_F(WatchCommandTest, SaysThatTheCameraToTrustIsNotConnected) {
    const auto isTold = [this](const std::string& wanted) {
        return std::ranges::count(reported(), "status: Eine Kamera „" + wanted +
                                                  "“ ist nicht verbunden; ihr wird vertraut, "
                                                  "sobald sie es ist.");
    };
    begin("Kamera B");
    EXPECT_EQ(isTold("Kamera B"), 1);
    attach("A");
    loop.settle();
    EXPECT_EQ(isTold("Kamera B"), 0) << "once is enough";
    EXPECT_TRUE(ends.empty());

    for (const std::string wanted : {"Kamera A", "serial:A"}) {
        make();
        attach("A");
        makeCommand({.trust = wanted});
        command->begin();
        EXPECT_EQ(isTold(wanted), 0);
    }
}

TEST_F(WatchCommandTest, SaysOnceThatItsTrustIsNotKept) {
    begin("Kamera B");
    settings->losesChanges = true;
    deliver(*attach("B"));
    deliver(*attach("C"));
    EXPECT_EQ(
        std::ranges::count(report.lines, "error: Die Einstellung lässt sich nicht speichern."), 1);
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, TellsEachTimeWhatToDoAboutAMissingDestination) {
    const Lines expected{
        "✗ Auto-Import ausgesetzt: Zielordner fehlt oder ist nicht beschreibbar. Ziel: /bilder",
        "status: Wenn das behoben ist: Kamera neu verbinden, oder bildkurier-cli watch neu "
        "starten."};
    trust("serial:A");
    begin();
    store->removeItem(Url::file("/bilder"));
    auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    for (int time = 1; time <= 2; ++time) {
        reported();
        deliver(*camera);
        Lines lines = reported();
        std::erase_if(lines,
                      [&](const auto& line) { return std::ranges::count(expected, line) == 0; });
        EXPECT_EQ(lines, expected);
        model->cameraBrowserDidRemove(camera);
        loop.settle();
        camera = returned(*camera);
    }
    ASSERT_TRUE(store->createDirectory(Url::file("/bilder")));
    deliver(*camera);
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}}));
}

TEST_F(WatchCommandTest, SaysWhyItCannotTrustACamera) {
    begin("Kamera B");
    attached(camera("B"));
    loop.settle();
    EXPECT_NE(std::ranges::find_if(report.lines,
                                   [](const std::string& line) {
                                       return line.ends_with(
                                           " Kein Auto-Import: Kamera B hat keine Kennung, an der "
                                           "sie wiederzuerkennen wäre.");
                                   }),
              report.lines.end());
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, EndsAtOnceWhileNothingIsBeingLoaded) {
    trust("serial:A");
    begin();
    command->interrupt();
    expectEnd(ExitStatus::interrupted);
}

TEST_F(WatchCommandTest, EndsAfterTheFileInFlight) {
    trust("serial:A");
    begin();
    const auto camera = attach("A");
    const auto first = file(*camera, "A.JPG", "aaaa");
    first->holdsBack = true;
    file(*camera, "B.JPG", "bb");
    deliver(*camera);
    command->interrupt();
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(report.lines.back(), "status: Breche nach der aktuellen Datei ab …");
    first->deliver();
    loop.settle();
    EXPECT_EQ(report.lines.back(), "finished: 1/2 done, 0 failed, cancelled");
    EXPECT_EQ(store->tree(Url::file("/bilder")), (Tree{{"A.JPG", "aaaa"}}));
    expectEnd(ExitStatus::interrupted);
}

TEST_F(WatchCommandTest, TellsTheEndOfAnImportThatIsOverWhenItIsInterrupted) {
    for (const bool cameraIsLost : {false, true}) {
        SCOPED_TRACE(cameraIsLost);
        trust("serial:A");
        begin();
        ends.clear();
        const auto camera = attach("A");
        const auto only = file(*camera, cameraIsLost ? "A.JPG" : "B.JPG", "aaaa");
        only->holdsBack = true;
        deliver(*camera);
        reported();
        if (cameraIsLost) {
            model->cameraBrowserDidRemove(camera);
        } else {
            only->deliver();
        }
        while (model->phase() == ImportModel::Phase::importing)
            ASSERT_TRUE(loop.stepMain() || loop.stepBackground());
        command->interrupt();
        const auto isSummary = [](const std::string& line) { return line.starts_with("Fertig: "); };
        EXPECT_EQ(std::ranges::count_if(report.lines, isSummary), 1);
        EXPECT_EQ(report.lines.back(), cameraIsLost ? "finished: 0/1 done, 0 failed, cancelled"
                                                    : "finished: 1/1 done, 0 failed, cancelled");
        expectEnd(ExitStatus::interrupted);
    }
}

TEST_F(WatchCommandTest, SaysThatAnotherImportRuns) {
    trust("serial:A");
    lock->takenByAnother = true;
    begin();
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    deliver(*camera);
    EXPECT_TRUE(report.lines.back().ends_with(" Auto-Import wartet: Es läuft schon ein Import."))
        << report.lines.back();
    EXPECT_TRUE(ends.empty());
}

TEST_F(WatchCommandTest, WaitsForAServerThatItCouldNotListAndSaysSoOnce) {
    trust("serial:A");
    settings->storedKind = DestinationKind::sftp;
    settings->storedHost = "nas";
    settings->storedPath = "/fotos";
    ASSERT_TRUE(store->createDirectory(Url::file("/fotos")));
    const auto server = std::make_shared<FakeServer>(store, keyring);
    files = server;
    server->breakOfListings = "Broken pipe";
    begin();
    const auto camera = attach("A");
    file(*camera, "A.JPG", "aaaa");
    deliver(*camera);
    EXPECT_TRUE(report.lines.back().ends_with(std::string(" Auto-Import wartet: ") +
                                              ImportModel::unlistedWaitStatus))
        << report.lines.back();
    reported();
    loop.advance(Duration(60));
    EXPECT_EQ(reported(), Lines()) << "once is enough";
    server->breakOfListings.reset();
    loop.advance(Duration(60));
    EXPECT_EQ(store->files.at("/fotos/A.JPG"), "aaaa");
    EXPECT_TRUE(ends.empty());
}

}  // namespace
}  // namespace bildkurier
