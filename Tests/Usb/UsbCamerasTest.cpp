// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbCamerasTest.h"

#include "OrdinaryUser.h"
#include "TemporaryVolume.h"
#include "Tree.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <thread>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

TEST_F(UsbCamerasTest, ReportsAnEmptyBus) {
    start();
    runUntil([this] { return !sink->events.empty(); });
    EXPECT_EQ(sink->events, Events{"reported"});
}

TEST_F(UsbCamerasTest, HasReportedWhatIsPluggedInBeforeItSaysSo) {
    usb.plugIn("1-1", device);
    device.name = "Zweite";
    device.serial = "S2002";
    usb.plugIn("1-2", device);
    start();
    runUntil([this] { return !sink->events.empty() && sink->events.back() == "reported"; });
    EXPECT_EQ((std::multiset<std::string>(sink->events.begin(), sink->events.end())),
              (std::multiset<std::string>{"+Testkamera", "+Zweite", "reported"}));
    EXPECT_EQ(sink->threads, std::vector(sink->threads.size(), std::this_thread::get_id()));
}

TEST_F(UsbCamerasTest, ShowsACameraThatDoesNotSayInTimeWhoItIs) {
    timing.identifying = Milliseconds(500);
    device.serial = "";
    device.settings["serial"] = "P1001";
    device.settings["rate"] = "300";
    usb.plugIn("1-1", device);
    start();
    runUntil([this] { return !sink->events.empty() && sink->events.back() == "reported"; });
    ASSERT_EQ(sink->events, (Events{"+Testkamera", "reported"}));
    camera = sink->added.front();
    EXPECT_EQ(camera->facts().serial, "");
    EXPECT_EQ(camera->facts().persistentId, "usb:1209:0001:1-1");
    EXPECT_FALSE(camera->facts().isComplete);
    runUntil([this] { return camera->facts().serial == "P1001"; });
    EXPECT_TRUE(camera->facts().isComplete);
    EXPECT_EQ(sink->events, (Events{"+Testkamera", "reported", "=Testkamera"}));
}

TEST_F(UsbCamerasTest, ShowsAHangingCameraThatIsPluggedInLater) {
    timing.identifying = Milliseconds(30);
    start();
    runUntil([this] { return !sink->events.empty(); });
    device.serial = "";
    device.settings["rate"] = "1000";
    usb.plugIn("1-1", device);
    runUntil([this] { return sink->events.size() == 2; });
    EXPECT_EQ(sink->events, (Events{"reported", "+Testkamera"}));
}

TEST_F(UsbCamerasTest, TellsANameThatBecomesKnownLater) {
    timing.identifying = Milliseconds(30);
    VirtualBus::Device slow{.serial = "", .settings = device.settings};
    slow.settings.insert({{"serial", "P1001"}, {"rate", "300"}});
    usb.plugIn("1-1", slow);
    start();
    runUntil([this] { return usb.count("1-1", "openings") == 1; });
    device.vendor = "04a9";
    device.product = "32f4";
    device.name = "Canon Digital Camera";
    usb.plugIn("1-2", device);
    const auto hasTold = [this](const std::string& event) {
        return std::ranges::count(sink->events, event) == 1;
    };
    runUntil([&] { return hasTold("+Canon Digital Camera"); });
    runUntil([&] { return hasTold("=Canon EOS R5"); });
}

TEST_F(UsbCamerasTest, KnowsACameraAgainThatWasHeldWhenItWasPluggedIn) {
    device.serial = "";
    device.settings.insert({{"serial", "P1001"}, {"busy", "1"}});
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(opened(), "opened");
    runUntil([this] { return camera->facts().serial == "P1001"; });
    EXPECT_EQ(sink->added.size(), 1U);
    usb.pull("1-1");
    runUntil([this] { return !sink->removed.empty(); });
    usb.change("1-1", {{"busy", "1000"}});
    usb.plugInAgain("1-1");
    runUntil([this] { return sink->added.size() == 2; });
    EXPECT_EQ(sink->added.back()->facts().serial, "P1001");
}

TEST_F(UsbCamerasTest, LeavesACameraToWhoUsesItUntilItIsWanted) {
    device.serial = "";
    device.settings["serial"] = "P1001";
    device.settings["busy"] = "1";
    release = [](const UsbPlace&, const UsbSession&) {
        ADD_FAILURE() << "nobody wants the camera";
    };
    usb.plugIn("1-1", device);
    start();
    runUntil([this] { return !sink->added.empty(); });
    EXPECT_EQ(sink->added.front()->facts().serial, "");
    EXPECT_EQ(usb.count("1-1", "openings"), 1U);
}

TEST_F(UsbCamerasTest, WaitsForACameraThatIsBusy) {
    device.settings["busy"] = "4";
    usb.plugIn("1-1", device);
    release = [](const UsbPlace&, const UsbSession&) {
        ADD_FAILURE() << "nobody needs to be asked";
    };
    start();
    EXPECT_EQ(opened(), "opened");
    EXPECT_EQ(usb.count("1-1", "openings"), 5U);
}

TEST_F(UsbCamerasTest, WaitsForACameraThatIsBusyWhenItIsOpenedAnew) {
    device.settings.insert({{"fault_at", "1000000"}, {"fault", "-7"}, {"faults", "1"}});
    device.settings.insert({{"busy_after", "1"}, {"busy", "3"}});
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    download(*found.at(0), target);
    runUntil([this] { return !answered().empty(); });
    EXPECT_EQ(answered(), Events{"done"});
    EXPECT_EQ(usb.count("1-1", "openings"), 5U);
}

TEST_F(UsbCamerasTest, AsksNoMoreWhatIsNewOnceAnotherProgramHasTakenTheCamera) {
    device.settings.insert({{"event_fault", "-7"}, {"event_faults", "2"}});
    device.settings.insert({{"busy_after", "1"}, {"busy", "1000"}});
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    runUntil([&] { return usb.count("1-1", "openings") == 3; });
    download(*found.at(0), target);
    runUntil([this] { return !answered().empty(); });
    EXPECT_EQ(answered(), Events{"Die Kamera ist mit anderem beschäftigt"});
    EXPECT_EQ(usb.count("1-1", "openings"), 8U);
    EXPECT_EQ(camera->mediaFiles().size(), 2U);
    EXPECT_EQ(events->events.back(), "ready");
}

TEST_F(UsbCamerasTest, IsOpenedAnewOnceForAllThatItTellsOfTwice) {
    timing.events = Milliseconds(500);
    for (const char* name : {"IMG_0001.JPG", "IMG_0002.JPG"}) {
        device.settings[std::string("early ") + name] = "1";
        device.settings[std::string("comes_again ") + name] = "1";
    }
    usb.plugIn("1-1", device);
    start();
    files();
    runUntil([this] { return events->events.back() == "added"; });
    std::multiset<std::int64_t> sizes;
    for (const auto& item : camera->mediaFiles()) sizes.insert(item.file->facts().size);
    EXPECT_EQ(sizes, (std::multiset<std::int64_t>{5, 2'500'000}));
    EXPECT_EQ(usb.count("1-1", "openings"), 2U);
}

TEST_F(UsbCamerasTest, AsksWhoHoldsACameraToLetGoOfIt) {
    usb.plugIn("1-1", device);
    const int holder = ::open(usb.claimFile("1-1").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    std::vector<std::string> asked;
    release = [&](const UsbPlace& place, const UsbSession&) {
        asked.push_back(place.port);
        ::flock(holder, LOCK_UN);
    };
    start();
    EXPECT_EQ(opened(), "opened");
    EXPECT_EQ(asked, Events{"usb:001,001"});
    ::close(holder);
}

TEST_F(UsbCamerasTest, WaitsALittleForACameraThatIsBeingLetGoOf) {
    device.settings["busy"] = "6";
    usb.plugIn("1-1", device);
    int asked = 0;
    release = [&asked](const UsbPlace&, const UsbSession&) { ++asked; };
    start();
    EXPECT_EQ(opened(), "opened");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(usb.count("1-1", "openings"), 7U);
}

TEST_F(UsbCamerasTest, SaysWhenAnotherProgramKeepsTheCamera) {
    device.settings["busy"] = "1000";
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(opened(), "failed: Ein anderes Programm gibt die Kamera Testkamera nicht frei");
    usb.change("1-1", {{"busy", "0"}});
    EXPECT_EQ(opened(), "opened");
}

TEST_F(UsbCamerasTest, SaysWhenTheCameraDoesNotAnswer) {
    device.settings.insert({{"fault_at", "0"}, {"fault", "-34"}});
    usb.plugIn("1-1", device);
    start();
    EXPECT_TRUE(opened().starts_with("failed: Die Kamera Testkamera antwortet nicht (Fehler "))
        << events->events.front();
}

TEST_F(UsbCamerasTest, SaysWhenTheLibraryDoesNotKnowTheCamera) {
    usb.plugIn("1-1", device);
    fs::remove(usb.claimFile("1-1"));
    start();
    EXPECT_EQ(opened(), "failed: Die Kamera Testkamera ist libgphoto2 nicht bekannt");
}

TEST_F(UsbCamerasTest, SaysWhenTheCameraIsPulledWhileItIsOpened) {
    timing.scan = Milliseconds(60'000);
    device.settings.insert({{"fault_at", "0"}, {"fault", "pull"}});
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(opened(), "failed: Die Kamera wurde getrennt");
}

TEST_F(UsbCamerasTest, SaysWhatToDoWithoutPermission) {
    device.settings.insert({{"fault_at", "0"}, {"fault", "-34"}});
    usb.plugIn("1-1", device);
    const UsbPlace place = usb.bus().cameras().at(0);
    fs::create_directories(fs::path(place.node).parent_path());
    ASSERT_EQ(::close(::open(place.node.c_str(), O_CREAT | O_CLOEXEC, 0)), 0);
    usb.showToEverybody();
    runAsOrdinaryUser([&] {
        CameraConnection connection(place, usb.bus(), timing, release);
        const auto result = connection.open(std::make_shared<UsbSession>());
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().message,
                  "Keine Berechtigung für die Kamera Testkamera (Abhilfe: die udev-Regeln des "
                  "Pakets libgphoto2-6 installieren, selbst am Rechner angemeldet sein und die "
                  "Kamera neu anstecken)");
    });
}

TEST_F(UsbCamerasTest, ReplacesWhatStandsThere) {
    folder.write("target/copy", std::string(9'000'000, 'x'));
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    download(*found.at(1), target, false);
    runUntil([this] { return answered().size() == 1; });
    EXPECT_TRUE(answered().at(0).starts_with("Die Datei lässt sich nicht speichern: "));
    download(*found.at(1), target);
    runUntil([this] { return answered().size() == 2; });
    EXPECT_EQ(answered().at(1), "done");
    EXPECT_EQ(tree(target), (Tree{{"copy", "klein"}}));
}

TEST_F(UsbCamerasTest, GoesOnWithTheNextFileOnceTheDiskIsFull) {
    const TemporaryVolume volume(2'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "mounting a volume takes root";
    for (const char* inPieces : {"0", "1"}) {
        device.settings["partial"] = inPieces;
        usb.plugIn("1-1", device);
        start();
        const std::size_t before = answered().size();
        const auto found = files();
        download(*found.at(0), volume.path());
        runUntil([&] { return answered().size() == before + 1; });
        EXPECT_TRUE(answered().back().ends_with("Auf dem Volume ist kein Platz mehr frei"))
            << answered().back();
        EXPECT_EQ(tree(volume.path()), Tree());
        download(*found.at(1), target);
        runUntil([&] { return answered().size() == before + 2; });
        EXPECT_EQ(answered().back(), "done");
        cameras.reset();
        sink->added.clear();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbCamerasTest, AnswersEachDownloadOnceWhenTheSessionIsClosed) {
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    for (int i = 0; i < 20; ++i) download(*found.at(0), target);
    camera->closeSession();
    // One of them may be being completed.
    runUntil([this] { return answered().size() == 20; });
    download(*found.at(0), target);
    EXPECT_EQ(answered().size(), 21U);
    EXPECT_EQ(answered().back(), "Das Laden wurde abgebrochen");
    EXPECT_EQ(opened(), "opened");
    EXPECT_EQ(answered().size(), 21U);
}

TEST_F(UsbCamerasTest, AnswersEachDownloadOnceWhenTheCameraIsPulled) {
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    for (int i = 0; i < 20; ++i) download(*found.at(0), target);
    usb.pull("1-1");
    runUntil([this] { return !sink->removed.empty(); });
    EXPECT_EQ(answered().size(), 20U);
    EXPECT_EQ(answered().back(), "Die Kamera wurde getrennt");
    EXPECT_TRUE(camera->mediaFiles().empty());
    download(*found.at(0), target);
    EXPECT_EQ(answered().size(), 21U);
}

TEST_F(UsbCamerasTest, AnswersEachDownloadOnceAtTheEnd) {
    timing.ending = UsbTiming().ending;
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    for (int i = 0; i < 20; ++i) download(*found.at(0), target);
    EXPECT_LT(secondsToEnd(), 1.0);
    EXPECT_EQ(answered().size(), 20U);
}

TEST_F(UsbCamerasTest, KeepsNothingOfADownloadAskedForAtTheEnd) {
    usb.plugIn("1-1", device);
    start();
    auto found = files();
    cameras.reset();
    const auto token = std::make_shared<int>();
    found.at(0)->download({.directory = target, .saveAs = "copy"}, [token](const auto&) {});
    found.clear();
    camera.reset();
    sink->added.clear();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(UsbCamerasTest, EndsInTimeWhileACameraIsPulled) {
    timing.ending = UsbTiming().ending;
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    download(*found.at(0), target);
    usb.pull("1-1");
    EXPECT_LT(secondsToEnd(), 1.0);
    EXPECT_EQ(answered().size(), 1U);
}

TEST_F(UsbCamerasTest, EndsInTimeWhileACameraHangs) {
    timing.answer = Milliseconds(3'000);
    timing.ending = Milliseconds(100);
    device.settings.insert({{"fault_at", "1000000"}, {"fault", "hang"}});
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    download(*found.at(0), target);
    runUntil([&] { return usb.count("1-1", "faults") > 0; });
    EXPECT_LT(secondsToEnd(), 1.0);
    EXPECT_EQ(answered(), Events{"Das Laden wurde abgebrochen"});
}

TEST_F(UsbCamerasTest, NoticesNewShotsAfterACameraFailedToTellOfThem) {
    device.settings.insert({{"event_fault", "-7"}, {"event_faults", "2"}});
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(files().size(), 2U);
    runUntil([&] { return usb.count("1-1", "event-faults") == 2; });
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    runUntil([this] { return camera->mediaFiles().size() == 3; });
}

TEST_F(UsbCamerasTest, NoticesNewShotsThatWereTakenBeforeAFaultOfADownload) {
    timing.events = Milliseconds(300);
    device.settings.insert({{"fault_at", "1000000"}, {"fault", "-7"}, {"faults", "1"}});
    usb.plugIn("1-1", device);
    start();
    const auto found = files();
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    download(*found.at(0), target);
    runUntil([this] { return camera->mediaFiles().size() == 3; });
    EXPECT_EQ(answered(), Events{"done"});
    EXPECT_EQ(events->events.back(), "added");
    EXPECT_EQ(usb.count("1-1", "openings"), 2U);
}

TEST_F(UsbCamerasTest, ShowsWhatCouldNotBeReadBeforeAFaultOfADownload) {
    timing.events = Milliseconds(300);
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    device.settings.insert({{"fault_of IMG_0003.JPG", "8201"},
                            {"fault_of contents of IMG_0002.JPG", "-7"},
                            {"faults_of", "3"}});
    usb.plugIn("1-1", device);
    start();
    const auto names = [this] {
        std::multiset<std::string> found;
        for (const auto& item : camera->mediaFiles()) found.insert(*item.file->facts().name);
        return found;
    };
    const auto found = files();
    EXPECT_EQ(names(), (std::multiset<std::string>{"100TEST", "IMG_0001.JPG", "IMG_0002.JPG"}));
    ASSERT_EQ(found.at(2)->facts().name, "IMG_0002.JPG");
    download(*found.at(2), target);
    runUntil([&] { return events->events.back() == "added"; });
    EXPECT_EQ(names(),
              (std::multiset<std::string>{"IMG_0001.JPG", "IMG_0002.JPG", "IMG_0003.JPG"}));
}

TEST_F(UsbCamerasTest, NoticesNewShotsBehindWhatElseTheCameraTells) {
    timing.events = Milliseconds(1'000);
    device.settings["other_events"] = "200";
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(files().size(), 2U);
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    runUntil([this] { return camera->mediaFiles().size() == 3; });
}

TEST_F(UsbCamerasTest, DoesNotAskAnewWhatIsToldOfFilesOfOtherKinds) {
    folder.write("card/DCIM/100TEST/IMG_0001.CR4", "x");
    device.settings.insert({{"early IMG_0001.CR4", "1"}, {"comes_again IMG_0001.CR4", "1"}});
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(files().size(), 2U);
    const auto openings = usb.count("1-1", "openings");
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    runUntil([this] { return camera->mediaFiles().size() == 3; });
    EXPECT_EQ(usb.count("1-1", "grown IMG_0001.CR4"), 1U);
    EXPECT_EQ(usb.count("1-1", "openings"), openings);
}

TEST_F(UsbCamerasTest, LetsGoOfACameraThatFailsToTellOfNewShots) {
    for (const char* error : {"-7", "-6"}) {
        SCOPED_TRACE(error);
        device.settings["event_fault"] = error;
        device.settings["event_faults"] = "1000";
        usb.plugIn("1-1", device);
        start();
        const auto found = files();
        runUntil([&] { return usb.count("1-1", "event-faults") > 0; });
        download(*found.at(1), target);
        runUntil([this] { return !answered().empty(); });
        EXPECT_EQ(answered().back(), "done");
        camera->closeSession();
        const int other = ::open(usb.claimFile("1-1").c_str(), O_RDONLY | O_CLOEXEC);
        runUntil([&] { return ::flock(other, LOCK_EX | LOCK_NB) == 0; });
        ::close(other);
        cameras.reset();
        sink->added.clear();
        usb.unplugForGood("1-1");
    }
}

/// A camera whose cable fails again and again while its many folders are listed.
class FaultyListingTest : public UsbCamerasTest {
protected:
    static constexpr int folders = 12;
    static constexpr int filesInEach = 5;

    FaultyListingTest() {
        for (int number = 101; number <= 100 + folders; ++number) {
            for (int file = 0; file < filesInEach; ++file)
                folder.write(fmt::format("card/DCIM/{}TEST/IMG_{}{}.JPG", number, number, file),
                             "x");
        }
    }

    /// Lists with a fault whenever it has sent so many bytes.
    std::vector<std::shared_ptr<NativeFile>> filesWithFaultsAt(int byte) {
        device.settings.insert({{"fault_at", std::to_string(byte)}, {"fault", "-7"}});
        usb.plugIn("1-1", device);
        start();
        return files();
    }
};

TEST_F(FaultyListingTest, IsCompleteWhenEachFolderCanBeReadInTheEnd) {
    const auto found = filesWithFaultsAt(5'000);
    EXPECT_EQ(found.size(), 2U + folders * filesInEach);
    for (const auto& file : found) EXPECT_GT(file->facts().size, 0) << *file->facts().name;
    EXPECT_GT(usb.count("1-1", "openings"), 3U);
}

TEST_F(FaultyListingTest, IsGivenUpAfterThreeFoldersInARow) {
    const auto found = filesWithFaultsAt(4'000);
    std::multiset<std::string> unreadable;
    for (const auto& file : found)
        if (file->facts().size == 0) unreadable.insert(*file->facts().name);
    std::multiset<std::string> expected;
    for (int number = 100; number <= 100 + folders; ++number)
        expected.insert(fmt::format("{}TEST", number));
    EXPECT_EQ(unreadable, expected);
    // For each of the three, two to list its files, one more to list its folders; and those to
    // get as far as that.
    EXPECT_LT(usb.count("1-1", "openings"), 1U + 4 * 4);
}

TEST_F(UsbCamerasTest, CountsWhatElseIsThereWhileItIsOpen) {
    for (const std::string name :
         {"100TEST/IMG_0001.CR4", "100TEST/IMG_0003.XMP", "100TEST/._IMG_0001.JPG",
          "100TEST/.IMG_0004.JPG", "CANONMSC/M0100.CTG"})
        folder.write("card/DCIM/" + name, "x");
    folder.write("card/.alt/IMG_0009.JPG", "x");
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(files().size(), 2U);
    EXPECT_EQ(camera->otherFiles(), (OtherFiles{.kinds = {{"CR4", 1}, {"XMP", 1}},
                                                .hidden = {{".IMG_0004.JPG", 1}, {".alt", 1}}}));
    camera->closeSession();
    EXPECT_EQ(camera->otherFiles(), OtherFiles{});
}

TEST_F(UsbCamerasTest, ListsOnceMoreWhenTheSessionIsOpenedAgain) {
    usb.plugIn("1-1", device);
    start();
    EXPECT_EQ(files().size(), 2U);
    folder.write("card/DCIM/100TEST/IMG_0003.JPG", "neu");
    EXPECT_EQ(files().size(), 3U);
}

}  // namespace
}  // namespace bildkurier
