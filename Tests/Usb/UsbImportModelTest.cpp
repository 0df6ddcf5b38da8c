// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbImportTest.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

TEST_F(UsbImportTest, FindsACameraThatIsPluggedInAlready) {
    usb.plugIn("1-1", camera("S1001"));
    start();
    runUntil([this] { return !model->cameras().empty(); });
    EXPECT_EQ(model->cameras().at(0)->name(), "Testkamera");
    EXPECT_EQ(model->cameras().at(0)->identity(), "serial:S1001");
}

TEST_F(UsbImportTest, FindsACameraThatIsPluggedInLaterAndForgetsItWhenItIsPulled) {
    start();
    usb.plugIn("1-1", camera());
    runUntilReady();
    usb.pull("1-1");
    runUntil([this] { return model->cameras().empty(); });
    EXPECT_EQ(model->status(), ImportModel::searchingStatus);
}

TEST_F(UsbImportTest, KnowsACameraByTheBestThatThereIs) {
    const struct {
        std::string serial;     ///< at the USB
        std::string ownSerial;  ///< that the camera tells when it is asked
        std::string vendor;
        std::string identity;
    } cases[] = {
        {"S1001", "", "1209", "serial:S1001"},
        {"S1001", "P1001", "1209", "serial:S1001"},
        {"", "P1001", "1209", "serial:P1001"},
        {"", "", "1209", "persistent:usb:1209:0001:1-1"},
        // What many cameras have in common tells none of them from another.
        {"0000000000", "P1001", "1209", "serial:P1001"},
        {"0123456789ABCDEF", "1234", "1209", "persistent:usb:1209:0001:1-1"},
        {"1234", "", "04a9", "persistent:usb:04a9:0001:1-1"},
        // Asking would set it to being controlled from here.
        {"", "P1001", "04a9", "persistent:usb:04a9:0001:1-1"},
    };
    for (const auto& [serial, ownSerial, vendor, identity] : cases) {
        auto device = camera(serial);
        device.vendor = vendor;
        device.settings["serial"] = ownSerial;
        usb.plugIn("1-1", device);
        start();
        runUntil([this] { return !model->cameras().empty(); });
        EXPECT_EQ(model->cameras().at(0)->identity(), identity);
        stop();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbImportTest, ImportsTheWholeCardWithItsTimes) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    addLarge("card/DCIM/100TEST/IMG_0002.JPG", 3'000'001, 2);
    addLarge("card/DCIM/101TEST/MVI_0003.MP4", 5'000'000, 3);
    add("card/DCIM/101TEST/SND_0004.WAV", "Ton", 3);
    usb.plugIn("1-1", camera());
    start();
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
    EXPECT_TRUE(hasLogged("Fertig: 4 geladen"));
    for (const char* path : {"100TEST/IMG_0001.JPG", "101TEST/MVI_0003.MP4"}) {
        const fs::path copy = fs::path(destination) / fs::path(path).filename();
        EXPECT_EQ(fs::last_write_time(copy), fs::last_write_time(card + "/DCIM/" + path)) << path;
    }
}

TEST_F(UsbImportTest, LeavesTheCameraAsItIs) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    for (const char* vendor : {"1209", "04a9"}) {
        auto device = camera(vendor);
        device.vendor = vendor;
        if (device.vendor == "04a9") device.settings["extension"] = "11";
        usb.plugIn("1-1", device);
        start();
        importAll();
        // It would answer that it does not know anything that changes it.
        EXPECT_EQ(usb.count("1-1", "unknown"), 0U) << vendor;
        stop();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbImportTest, TakesNoMarkFromACameraButThatAFileIsNew) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    add("card/DCIM/100TEST/IMG_0002.JPG", "noch ein Bild");
    auto device = camera();
    device.vendor = "04a9";
    device.settings.insert({{"extension", "11"}, {"marks_new", "1"}});
    usb.plugIn("1-1", device);
    start();
    importAll();
    EXPECT_EQ(imported(), filesOf(card));
    // The library does that whenever it has read a file.
    EXPECT_EQ(usb.count("1-1", "unmarked"), 2U);
    EXPECT_EQ(usb.count("1-1", "unknown"), 0U);
}

TEST_F(UsbImportTest, ReadsBothCards) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "auf der ersten");
    add("second/DCIM/100TEST/IMG_0001.JPG", "auf der zweiten Karte", 2);
    add("second/DCIM/100TEST/IMG_0002.JPG", "noch eines", 3);
    auto device = camera();
    device.settings["store2"] = folder.path("second");
    usb.plugIn("1-1", device);
    start();
    importAll();
    EXPECT_EQ(imported(), (Tree{{"IMG_0001.JPG", "auf der ersten"},
                                {"IMG_0001_1.JPG", "auf der zweiten Karte"},
                                {"IMG_0002.JPG", "noch eines"}}));
}

TEST_F(UsbImportTest, PutsSidecarsBehindTheirPictureAndOnItsDay) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild", 1);
    add("card/DCIM/100TEST/IMG_0001.WAV", "Notiz", 2);
    add("card/DCIM/100TEST/IMG_0001.XMP", "Angaben", 3);
    add("card/DCIM/100TEST/IMG_0002.JPG", "noch ein Bild", 1);
    auto device = camera();
    device.settings["partial"] = "1";
    usb.plugIn("1-1", device);
    settings->storedByDate = true;
    start();
    runUntilReady();
    std::vector<std::string> names;
    for (const auto& file : model->cameras().at(0)->files()) names.push_back(*file->name());
    EXPECT_EQ(names, (std::vector<std::string>{"IMG_0001.JPG", "IMG_0001.WAV", "IMG_0001.XMP",
                                               "IMG_0002.JPG"}));
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
    EXPECT_TRUE(fs::exists(destination + "/2024-07-01/IMG_0001.XMP"));
}

TEST_F(UsbImportTest, SaysWhichFileTheCameraDoesNotHandOut) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    add("card/DCIM/100TEST/IMG_0001.XMP", "Angaben");
    usb.plugIn("1-1", camera());
    start();
    importAll();
    EXPECT_EQ(imported(), (Tree{{"IMG_0001.JPG", "ein Bild"}}));
    EXPECT_TRUE(hasLogged("Die Kamera gibt diese Datei nicht heraus"));
}

TEST_F(UsbImportTest, NamesWhatIsUnreadableWhateverTheFirstDay) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "nie lesbar", 1);
    add("card/DCIM/100TEST/IMG_0002.JPG", "nur anfangs lesbar", 1);
    add("card/DCIM/101TEST/IMG_0003.JPG", "lesbar", 3);
    auto device = camera();
    device.settings.insert({{"fault_of IMG_0001.JPG", "8201"},
                            {"fault_of IMG_0002.JPG", "8201"},
                            {"faults_after IMG_0002.JPG", "3"}});
    usb.plugIn("1-1", device);
    settings->storedUseFromDate = true;
    settings->storedFromDay = "2024-07-03";
    start();
    importAll();
    EXPECT_EQ(imported(), (Tree{{"IMG_0003.JPG", "lesbar"}})) << testing::PrintToString(log());
    for (const char* name : {"100TEST", "100TEST/IMG_0002.JPG"})
        EXPECT_TRUE(
            hasLogged(std::string("Auf der Kamera nicht lesbar: ") + "store_00010001/DCIM/" + name))
            << testing::PrintToString(log());
}

/// Where flushing takes no time, if that has room.
std::string memoryOr(const std::string& otherwise) {
    constexpr std::uintmax_t needed = 1'000'000'000;
    std::error_code error;
    const fs::path memory = "/dev/shm";
    const auto space = fs::space(memory, error);
    return !error && space.available >= needed ? memory.string() : otherwise;
}

TEST_F(UsbImportTest, CountsAndImportsThousands) {
    constexpr int folders = 20;
    constexpr int filesInEach = 1'000;
    for (int number = 100; number < 100 + folders; ++number) {
        for (int file = 1'000; file < 1'000 + filesInEach; ++file) {
            const std::string name = fmt::format("{}_{}.JPG", number, file);
            add(fmt::format("card/DCIM/{}TEST/{}", number, name), "Inhalt von " + name);
        }
    }
    const TemporaryFolder target(memoryOr(folder.path()));
    settings->storedDestination = target.url();
    usb.plugIn("1-1", camera());
    start();
    importAll();
    EXPECT_EQ(model->cameraFileCount(), folders * filesInEach);
    const auto counts = std::ranges::count_if(statuses, [](const std::string& status) {
        return status.starts_with("Lese Dateiliste der Karte(n) … bisher ");
    });
    EXPECT_GT(counts, 0) << testing::PrintToString(statuses);
    EXPECT_TRUE(filesOf(target.path()) == filesOf(card));
    EXPECT_TRUE(hasLogged("Fertig: 20000 geladen"));
}

TEST_F(UsbImportTest, NeverCountsBackWhileItLists) {
    for (int file = 1'000; file < 1'300; ++file)
        add(fmt::format("card/DCIM/100TEST/IMG_{}.JPG", file), "x");
    auto device = camera();
    device.settings.insert({{"fault_of IMG_1290.JPG", "-7"}, {"faults_of", "2"}});
    usb.plugIn("1-1", device);
    start();
    runUntilReady();
    const std::string before = "Lese Dateiliste der Karte(n) … bisher ";
    std::vector<int> counts;
    for (const auto& status : statuses)
        if (status.starts_with(before)) counts.push_back(std::stoi(status.substr(before.size())));
    EXPECT_GT(counts.size(), 1U);
    EXPECT_TRUE(std::ranges::is_sorted(counts)) << testing::PrintToString(counts);
    EXPECT_EQ(model->cameraFileCount(), 300);
}

TEST_F(UsbImportTest, ShowsHowAFileGrows) {
    addLarge("card/DCIM/100TEST/IMG_0001.JPG", 3'000'000);
    auto device = camera();
    device.settings["rate"] = "1500000";
    usb.plugIn("1-1", device);
    start();
    runUntilReady();
    model->startImport();
    runUntil([this] {
        const auto& progress = model->progress();
        return progress.currentBytes > 0 && progress.currentBytes < progress.currentTotal;
    });
    runUntil([this] { return model->phase() == Phase::ready; });
    EXPECT_EQ(imported(), filesOf(card));
}

TEST_F(UsbImportTest, SaysWhichFileWasDeletedOnTheCamera) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "bleibt");
    // Before and after the camera was asked what is new.
    for (const int events : {10'000, 1}) {
        timing.events = UsbTiming::Milliseconds(events);
        add("card/DCIM/100TEST/IMG_0002.JPG", "geht");
        usb.plugIn("1-1", camera());
        start();
        runUntilReady();
        fs::remove(card + "/DCIM/100TEST/IMG_0002.JPG");
        importAll();
        EXPECT_EQ(imported(), (Tree{{"IMG_0001.JPG", "bleibt"}}));
        EXPECT_TRUE(hasLogged("✗ IMG_0002.JPG: Die Kamera hat diese Datei nicht mehr"))
            << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbImportTest, LoadsAShotThatIsTakenWhileItIsConnected) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    usb.plugIn("1-1", camera());
    start();
    importAll();
    add("card/DCIM/100TEST/IMG_0002.JPG", "gerade aufgenommen");
    runUntil([this] { return model->phase() == Phase::ready && model->newFiles().size() == 1; });
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
    EXPECT_EQ(fs::last_write_time(destination + "/IMG_0002.JPG"),
              fs::last_write_time(card + "/DCIM/100TEST/IMG_0002.JPG"));
}

TEST_F(UsbImportTest, LoadsAShotThatIsTakenDuringAnImport) {
    addLarge("card/DCIM/100TEST/IMG_0001.JPG", 500'000);
    auto device = camera();
    device.settings["rate"] = "1000000";
    usb.plugIn("1-1", device);
    start();
    runUntilReady();
    model->startImport();
    add("card/DCIM/100TEST/IMG_0002.JPG", "gerade aufgenommen");
    runUntil([this] { return model->phase() == Phase::ready && model->newFiles().size() == 1; });
    EXPECT_EQ(model->newFiles()[0]->name(), "IMG_0002.JPG");
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
}

TEST_F(UsbImportTest, ImportsOnlyFromTheTrustedOfTwoCameras) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "von der anderen");
    add("trusted/DCIM/100TEST/IMG_0002.JPG", "von dieser");
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:S2002";
    usb.plugIn("1-1", camera("S1001"));
    auto trusted = camera("S2002");
    trusted.settings["store1"] = folder.path("trusted");
    usb.plugIn("1-2", trusted);
    start();
    runUntil([this] { return hasLogged("Fertig: ") && model->phase() == Phase::ready; });
    EXPECT_EQ(model->cameras().size(), 2U);
    EXPECT_EQ(imported(), filesOf(folder.path("trusted")));
}

TEST_F(UsbImportTest, ImportsFromATrustedCameraThatWasHeldWhenItWasPluggedIn) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "von der anderen");
    add("trusted/DCIM/100TEST/IMG_0002.JPG", "von dieser");
    settings->storedAutoImport = true;
    settings->storedIdentity = "serial:P1001";
    auto trusted = camera("");
    trusted.settings.insert_or_assign("store1", folder.path("trusted"));
    trusted.settings.insert({{"serial", "P1001"}, {"busy", "1"}});
    usb.plugIn("1-1", trusted);
    start();
    runUntil([this] { return hasLogged("Fertig: ") && model->phase() == Phase::ready; });
    EXPECT_EQ(imported(), filesOf(folder.path("trusted")));
}

TEST_F(UsbImportTest, TrustsACameraOnceItsIdentityIsFinal) {
    auto device = camera("");
    device.settings.insert({{"serial", "P1001"}, {"busy", "1"}});
    usb.plugIn("1-1", device);
    start();
    model->trustWhenConnected("Testkamera");
    runUntil([this] { return model->autoImportEnabled(); });
    EXPECT_EQ(settings->storedIdentity, "serial:P1001");
    EXPECT_FALSE(hasLogged("✗")) << testing::PrintToString(log());
}

TEST_F(UsbImportTest, KeepsWhatIsCompleteWhenTheDiskIsFull) {
    const TemporaryVolume volume(std::uint64_t{210} << 20);
    if (!volume.isMounted()) GTEST_SKIP() << "mounting a volume takes root";
    settings->storedDestination = Url::file(volume.path());
    for (int i = 0; i < 70; ++i)
        addLarge("card/DCIM/100TEST/IMG_" + std::to_string(100 + i) + ".JPG", 4'000'000);
    usb.plugIn("1-1", camera());
    start();
    importAll();
    const Tree whole = filesOf(card);
    const Tree found = filesOf(volume.path());
    EXPECT_GT(found.size(), 40U);
    EXPECT_LT(found.size(), whole.size());
    for (const auto& [name, contents] : found) EXPECT_TRUE(contents == whole.at(name)) << name;
    EXPECT_TRUE(hasLogged("Auf dem Volume ist kein Platz mehr frei"));
}

TEST_F(UsbImportTest, NeverTakesAFileOfUnknownSizeForLoaded) {
    const struct {
        const char* name;
        std::int64_t announced;
    } cases[] = {{"MVI_0001.MP4", 0}, {"MVI_0003.MP4", 0xFFFFFFFF}, {"IMG_0005.JPG", 0},
                 {"IMG_0006.CR3", 0}, {"SND_0007.WAV", 0},          {"SND_0008.M4A", 0},
                 {"IMG_0001.XMP", 0}, {"MVI_0009.LRV", 0}};
    auto device = camera();
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    for (const auto& [name, announced] : cases) {
        add(std::string("card/DCIM/100TEST/") + name, "Inhalt");
        device.settings[std::string("announce ") + name] = std::to_string(announced);
    }
    add("card/DCIM/100TEST/MVI_0004.MP4", "Film");
    fs::resize_file(card + "/DCIM/100TEST/MVI_0004.MP4", (std::uintmax_t{1} << 32) + 5);
    for (const char* inPieces : {"0", "1"}) {
        device.settings["partial"] = inPieces;
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_EQ(imported(), (Tree{{"IMG_0001.JPG", "ein Bild"}})) << inPieces;
        const auto advice = std::ranges::count_if(model->log(), [](const std::string& line) {
            return line.find("bitte die Karte in einem Kartenleser einlesen") != std::string::npos;
        });
        EXPECT_EQ(advice, std::ssize(cases) + 1) << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbImportTest, LoadsTheWholeOfAShotThatWasToldOfTooEarly) {
    for (const char* early : {"0", "2999999", "3000001"}) {
        add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
        auto device = camera();
        device.settings.insert({{"partial", "1"}, {"early IMG_0002.JPG", early}});
        usb.plugIn("1-1", device);
        start();
        importAll();
        // At once, or the camera would tell of what is written by then.
        addLarge("aside/IMG_0002.JPG", 3'000'000);
        fs::rename(folder.path("aside/IMG_0002.JPG"), card + "/DCIM/100TEST/IMG_0002.JPG");
        runUntil([this] {
            return model->phase() == Phase::ready && model->newFiles().size() == 1 &&
                   model->newFiles()[0]->size() == 3'000'000;
        });
        importAll();
        EXPECT_EQ(imported(), filesOf(card)) << early << testing::PrintToString(log());
        EXPECT_FALSE(hasLogged("✗")) << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
        fs::remove_all(card + "/DCIM");
        fs::remove(destination + "/IMG_0002.JPG");
    }
}

TEST_F(UsbImportTest, NeverTakesAShotForWholeThatIsStillWrittenWhenItIsListed) {
    // Not asked what is new before the import.
    timing.events = UsbTiming::Milliseconds(60'000);
    const struct {
        const char* early;
        const char* comesAgain;
        const char* silences;  ///< when it is asked what is new
    } cases[] = {
        {"1500000", "0", "0"}, {"2999999", "0", "0"}, {"2999999", "1", "0"}, {"2999999", "0", "2"}};
    for (const auto& [early, comesAgain, silences] : cases) {
        SCOPED_TRACE(std::string(early) + " " + comesAgain + " " + silences);
        addLarge("card/DCIM/100TEST/IMG_0001.JPG", 3'000'000);
        add("card/DCIM/100TEST/IMG_0002.JPG", "noch eines");
        auto device = camera();
        device.settings.insert({{"partial", "1"},
                                {"early IMG_0001.JPG", early},
                                {"comes_again IMG_0001.JPG", comesAgain},
                                {"event_fault", "-7"},
                                {"event_faults", silences}});
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_TRUE(imported() == (Tree{{"IMG_0002.JPG", "noch eines"}}));
        EXPECT_TRUE(
            hasLogged("✗ IMG_0001.JPG: Die Kamera hat diese Datei noch geschrieben; bitte "
                      "noch einmal importieren"))
            << testing::PrintToString(log());
        runUntil([this] {
            return model->phase() == Phase::ready && model->newFiles().size() == 1 &&
                   model->newFiles()[0]->size() == 3'000'000;
        });
        importAll();
        EXPECT_TRUE(imported() == filesOf(card)) << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
        fs::remove_all(destination);
        fs::create_directory(destination);
    }
}

TEST_F(UsbImportTest, TakesNothingForWholeOfWhichTheCameraSaysNoMore) {
    timing.events = UsbTiming::Milliseconds(60'000);
    addLarge("card/DCIM/100TEST/IMG_0001.JPG", 2'000'000);
    auto device = camera();
    device.settings.insert({{"partial", "1"},
                            {"event_fault", "-7"},
                            {"event_faults", "2"},
                            {"fault_of IMG_0001.JPG", "8201"},
                            {"faults_after IMG_0001.JPG", "1"}});
    usb.plugIn("1-1", device);
    start();
    importAll();
    EXPECT_TRUE(imported().empty());
    EXPECT_TRUE(
        hasLogged("✗ IMG_0001.JPG: Die Kamera sagt nicht mehr, ob das die ganze Datei ist; bitte "
                  "noch einmal importieren"))
        << testing::PrintToString(log());
}

TEST_F(UsbImportTest, LeavesHiddenFilesAndFoldersOut) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    add("card/DCIM/100TEST/._IMG_0001.JPG", "Zwilling von einem Mac");
    add("card/.Trashes/501/SND_0002.WAV", "gelöscht");
    usb.plugIn("1-1", camera());
    start();
    importAll();
    EXPECT_EQ(imported(), (Tree{{"IMG_0001.JPG", "ein Bild"}}));
    add("card/DCIM/100TEST/._IMG_0003.JPG", "Zwilling");
    add("card/.Trashes/501/IMG_0004.JPG", "gelöscht");
    add("card/DCIM/100TEST/IMG_0003.JPG", "gerade aufgenommen");
    runUntil([this] { return model->phase() == Phase::ready && model->newFiles().size() == 1; });
    EXPECT_EQ(model->cameraFileCount(), 2);
    importAll();
    EXPECT_EQ(imported(),
              (Tree{{"IMG_0001.JPG", "ein Bild"}, {"IMG_0003.JPG", "gerade aufgenommen"}}));
    EXPECT_FALSE(hasLogged("✗")) << testing::PrintToString(log());
}

TEST_F(UsbImportTest, TakesSizesBeyond32BitsForWhatTheyAre) {
    add("card/DCIM/100TEST/MVI_0001.MP4", "Film");
    auto device = camera();
    device.settings.insert({{"extension", "10"}, {"announce MVI_0001.MP4", "4294967300"}});
    for (const char* inPieces : {"0", "1"}) {
        device.settings["partial"] = inPieces;
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_EQ(model->cameraBytes(), 4'294'967'300) << inPieces;
        EXPECT_EQ(imported(), Tree()) << inPieces;
        EXPECT_TRUE(hasLogged("Von der Kamera kamen 4 statt 4294967300 Bytes"))
            << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
    }
}

TEST_F(UsbImportTest, NeverTakesAFileForLoadedWhoseSizeIsNotAsAnnounced) {
    const struct {
        const char* name;
        const char* announced;
        const char* inPieces;
        const char* complaint;
    } cases[] = {
        {"IMG_0001.JPG", "2999999", "0",
         "Von der Kamera kamen mehr als die angegebenen 2999999 Bytes"},
        {"IMG_0002.JPG", "3000001", "0", "Von der Kamera kamen 3000000 statt 3000001 Bytes"},
        {"IMG_0003.JPG", "3000001", "1", "IMG_0003.JPG"},
    };
    for (const auto& [name, announced, inPieces, complaint] : cases) {
        addLarge(std::string("card/DCIM/100TEST/") + name, 3'000'000);
        auto device = camera();
        device.settings["partial"] = inPieces;
        device.settings[std::string("announce ") + name] = announced;
        usb.plugIn("1-1", device);
        start();
        importAll();
        EXPECT_EQ(imported(), Tree()) << name;
        EXPECT_TRUE(hasLogged("✗")) << name;
        EXPECT_TRUE(hasLogged(complaint)) << testing::PrintToString(log());
        stop();
        usb.unplugForGood("1-1");
        fs::remove(card + "/DCIM/100TEST/" + name);
    }
}

}  // namespace
}  // namespace bildkurier
