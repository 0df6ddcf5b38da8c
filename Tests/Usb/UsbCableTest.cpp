// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbImportTest.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <random>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Imports over a cable with faults.
class UsbCableTest : public UsbImportTest {
protected:
    UsbCableTest() {
        for (int i = 1; i <= 6; ++i) {
            const std::string name = "IMG_000" + std::to_string(i) + ".JPG";
            addLarge("card/DCIM/100TEST/" + name, 200'000 + static_cast<std::size_t>(i), i);
            bytes += fs::file_size(card + "/DCIM/100TEST/" + name);
        }
    }

    static std::map<std::string, std::string> faultAt(std::size_t byte, const std::string& fault,
                                                      int times) {
        return {{"fault_at", std::to_string(byte)},
                {"fault", fault},
                {"faults", std::to_string(times)}};
    }

    void plugInFaulty(std::size_t byte, const std::string& fault, int times) {
        auto device = camera();
        for (const auto& [name, value] : faultAt(byte, fault, times)) device.settings[name] = value;
        usb.plugIn("1-1", device);
    }

    /// Begins an import from `device`, and loses the camera in it.
    void loseImport(const VirtualBus::Device& device) {
        usb.plugIn("1-1", device);
        start();
        runUntilReady();
        model->startImport();
        runUntil([this] { return isLost(); });
    }

    /// Has the camera returned, and waits until the import that goes on then has ended.
    void goOn() {
        usb.plugInAgain("1-1");
        runUntil([this] { return model->phase() == Phase::ready && !model->awaitsCamera(); });
    }

    bool isLost() const { return !usb.isPluggedIn("1-1") && model->cameras().empty(); }

    /// Imports until nothing is missing; plugs the camera in again whenever it is lost.
    void importPluggingIn() {
        while (true) {
            runUntil([this] {
                return isLost() || (model->phase() == Phase::ready && !model->awaitsCamera());
            });
            if (isLost()) {
                usb.plugInAgain("1-1");
                runUntil([this] { return !model->cameras().empty(); });
            } else if (model->newFiles().empty()) {
                return;
            } else if (model->phase() == Phase::ready) {
                model->startImport();
            }
            if (HasFatalFailure()) return;
        }
    }

    /// Every file was announced as loaded once.
    void expectEachLoadedOnce() const {
        std::map<std::string, int> loaded;
        for (const auto& line : model->log())
            if (line.starts_with("✓ ")) ++loaded[line];
        EXPECT_EQ(loaded.size(), 6U) << testing::PrintToString(log());
        for (const auto& [line, times] : loaded) EXPECT_EQ(times, 1) << line;
    }

    /// As at the beginning.
    void endScenario() {
        stop();
        usb.unplugForGood("1-1");
        fs::remove_all(destination);
        fs::create_directory(destination);
    }

    std::size_t bytes = 0;  ///< of the card's files
};

constexpr int always = -1;

TEST_F(UsbCableTest, LoadsEverythingOnceHoweverOftenItIsPulled) {
    std::mt19937 random(20'251);
    std::uniform_int_distribution<std::size_t> listing(0, 3'000);
    std::uniform_int_distribution<std::size_t> anywhere(0, bytes);
    for (int i = 0; i < 25; ++i) {
        const std::size_t at = i % 4 == 0 ? listing(random) : anywhere(random);
        SCOPED_TRACE(at);
        plugInFaulty(at, "pull", 1);
        start();
        importPluggingIn();
        EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
        EXPECT_EQ(usb.count("1-1", "faults"), 1U);
        expectEachLoadedOnce();
        endScenario();
    }
}

TEST_F(UsbCableTest, SaysHowManyFilesAreLeftWhenItGoesOn) {
    for (const char* serial : {"S1001", ""}) {
        SCOPED_TRACE(serial);
        auto device = camera(serial);
        device.settings.merge(faultAt(bytes / 2, "pull", 1));
        loseImport(device);
        EXPECT_TRUE(hasLogged("Kamera getrennt, 2 von 6 geladen."))
            << testing::PrintToString(log());
        goOn();
        EXPECT_TRUE(hasLogged("Fortsetzung nach Trennung: noch 4 Dateien."))
            << testing::PrintToString(log());
        EXPECT_EQ(imported(), filesOf(card));
        expectEachLoadedOnce();
        endScenario();
    }
}

TEST_F(UsbCableTest, SaysThatNothingIsMissingAnyMore) {
    auto device = camera();
    device.settings.merge(faultAt(bytes / 2, "pull", 1));
    loseImport(device);
    for (const auto& file : fs::directory_iterator(card + "/DCIM/100TEST"))
        fs::copy(file.path(), destination, fs::copy_options::skip_existing);
    goOn();
    EXPECT_EQ(model->status(), "Nach der Trennung fehlt nichts mehr im Zielordner.");
}

TEST_F(UsbCableTest, GoesOnWithEverythingThatAnAutomaticImportWouldLoad) {
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:S1001";
    settings->storedUseFromDate = true;
    settings->storedFromDay = "2024-07-06";
    auto device = camera();
    device.settings.merge(faultAt(bytes / 2, "pull", 1));
    usb.plugIn("1-1", device);
    start();
    runUntil([this] { return isLost(); });
    goOn();
    EXPECT_TRUE(hasLogged("Fortsetzung nach Trennung: noch 4 Dateien."))
        << testing::PrintToString(log());
    EXPECT_EQ(imported(), filesOf(card));
}

TEST_F(UsbCableTest, GoesOnOnceAHeldCameraHasSaidWhoItIs) {
    auto device = camera("");
    device.settings["serial"] = "P1001";
    device.settings.merge(faultAt(bytes / 2, "pull", 1));
    loseImport(device);
    usb.change("1-1",
               {{"busy", "1"}, {"busy_after", std::to_string(usb.count("1-1", "openings"))}});
    goOn();
    EXPECT_TRUE(hasLogged("Fortsetzung nach Trennung: noch 4 Dateien."))
        << testing::PrintToString(log());
    EXPECT_EQ(imported(), filesOf(card));
}

TEST_F(UsbCableTest, DoesNotGoOnWithAnotherCameraThatComesInItsPlace) {
    auto device = camera("");
    device.settings["serial"] = "P1001";
    device.settings.merge(faultAt(bytes / 2, "pull", 1));
    loseImport(device);
    usb.unplugForGood("1-1");
    auto other = camera("");
    other.settings.insert({{"serial", "P2002"}, {"busy", "1"}});
    usb.plugIn("1-1", other);
    runUntilReady();
    EXPECT_TRUE(model->awaitsCamera());
    EXPECT_EQ(model->cameras().at(0)->identity(), "serial:P2002");
    EXPECT_EQ(imported().size(), 2U);
}

TEST_F(UsbCableTest, StopsAfterThreePullsWithoutAFile) {
    plugInFaulty(100'000, "pull", always);
    start();
    runUntilReady();
    model->startImport();
    for (int pull = 1; pull < 3; ++pull) {
        runUntil([this] { return isLost(); });
        EXPECT_EQ(model->status(),
                  "Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist.");
        usb.plugInAgain("1-1");
    }
    runUntil([this] { return isLost() && !model->awaitsCamera(); });
    EXPECT_TRUE(model->status().starts_with("Import gestoppt: ")) << model->status();
    usb.change("1-1", {{"fault_at", "-1"}});
    usb.plugInAgain("1-1");
    runUntilReady();
    EXPECT_EQ(imported(), Tree());
    EXPECT_EQ(model->newFiles().size(), 6U);
}

TEST_F(UsbCableTest, GetsOverAnErrorAtAnyByte) {
    const std::vector<std::string> errors{"-34", "-10", "-7", "-1", "-107"};
    for (std::size_t i = 0; i < 20; ++i) {
        const std::size_t at = i < 8 ? i * 400 : i * bytes / 20;
        const std::string& error = errors[i % errors.size()];
        SCOPED_TRACE(error + " at " + std::to_string(at));
        plugInFaulty(at, error, 1);
        start();
        importAll();
        EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
        endScenario();
    }
}

TEST_F(UsbCableTest, GoesOnAfterACameraCouldNotBeOpenedAnewAtOnce) {
    for (const std::size_t at : {bytes / 12, bytes / 2}) {
        SCOPED_TRACE(at);
        auto device = camera();
        device.settings.merge(faultAt(at, "-7", 1));
        device.settings.insert({{"busy", "1"}, {"busy_after", "1"}});
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
        EXPECT_EQ(usb.count("1-1", "faults"), 1U);
        EXPECT_EQ(usb.count("1-1", "openings"), 3U);
        endScenario();
    }
}

TEST_F(UsbCableTest, GetsOverFaultsBetweenThePiecesOfAFile) {
    timing.answer = UsbTiming::Milliseconds(30);
    addLarge("card/DCIM/100TEST/IMG_0000.JPG", 3'000'000, 1);
    for (const char* fault : {"pull", "-7", "-34", "hang"}) {
        for (const std::size_t at : {600'000, 1'100'000, 2'900'000}) {
            SCOPED_TRACE(fmt::format("{} at {}", fault, at));
            auto device = camera();
            device.settings.merge(faultAt(at, fault, 1));
            device.settings["partial"] = "1";
            usb.plugIn("1-1", device);
            start();
            importPluggingIn();
            EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
            EXPECT_EQ(usb.count("1-1", "faults"), 1U);
            endScenario();
        }
    }
}

TEST_F(UsbCableTest, GetsOverFaultsOfWhatIsReadInPiecesOnly) {
    addLarge("card/DCIM/100TEST/IMG_0001.XMP", 3'000'000, 1);
    for (const char* fault : {"-7", "-34", "8217"}) {
        SCOPED_TRACE(fault);
        auto device = camera();
        device.settings["partial"] = "1";
        device.settings["fault_of contents of IMG_0001.XMP"] = fault;
        device.settings["faults_of"] = "1";
        device.settings["faults_after contents of IMG_0001.XMP"] = "1";
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
        EXPECT_EQ(usb.count("1-1", "faults-of contents of IMG_0001.XMP"), 1U);
        endScenario();
    }
}

TEST_F(UsbCableTest, WaitsForACameraThatIsBusyWithAFile) {
    for (const char* times : {"3", "-1"}) {
        SCOPED_TRACE(times);
        auto device = camera();
        device.settings["fault_of contents of IMG_0001.JPG"] = "8217";
        device.settings["faults_of"] = times;
        usb.plugIn("1-1", device);
        start();
        importAll();
        Tree expected = filesOf(card);
        const bool isFreeInTheEnd = times == std::string("3");
        if (!isFreeInTheEnd) expected.erase("IMG_0001.JPG");
        EXPECT_EQ(imported(), expected) << testing::PrintToString(log());
        EXPECT_EQ(hasLogged("Die Kamera ist mit anderem beschäftigt"), !isFreeInTheEnd);
        endScenario();
    }
}

TEST_F(UsbCableTest, FailsWhatKeepsFailing) {
    for (const std::size_t at : {std::size_t{20'000}, bytes / 12, bytes / 6 - 1'000}) {
        SCOPED_TRACE(at);
        plugInFaulty(at, "-34", always);
        start();
        importAll();
        const Tree whole = filesOf(card);
        EXPECT_LT(imported().size(), whole.size());
        for (const auto& [name, contents] : imported())
            EXPECT_TRUE(contents == whole.at(name)) << name;
        EXPECT_TRUE(hasLogged("die Übertragung ist gestört")) << testing::PrintToString(log());
        endScenario();
    }
}

TEST_F(UsbCableTest, NeverTakesALateAnswerForTheNextFile) {
    // Small enough for one packet, and all of the same size, so that only what is in them tells
    // one from the other.
    for (const auto& entry : fs::directory_iterator(card + "/DCIM/100TEST"))
        fs::resize_file(entry.path(), 300);
    auto device = camera();
    device.settings["fault_of contents of IMG_0001.JPG"] = "-7";
    device.settings["faults_of"] = "3";
    usb.plugIn("1-1", device);
    start();
    importAll();
    Tree expected = filesOf(card);
    expected.erase("IMG_0001.JPG");
    EXPECT_EQ(imported(), expected) << testing::PrintToString(log());
}

TEST_F(UsbCableTest, GetsOverAStallThatTakesTooLong) {
    timing.answer = UsbTiming::Milliseconds(30);
    plugInFaulty(500'000, "hang", 1);
    start();
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
}

TEST_F(UsbCableTest, FailsWhatStallsForEver) {
    timing.answer = UsbTiming::Milliseconds(10);
    plugInFaulty(100'000, "hang", always);
    start();
    importAll();
    EXPECT_EQ(imported(), Tree());
    EXPECT_TRUE(hasLogged("Die Kamera antwortet nicht"));
    EXPECT_TRUE(hasLogged("6 fehlgeschlagen")) << testing::PrintToString(log());
}

}  // namespace
}  // namespace bildkurier
