// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MockedUsb.h"
#include "ProgramResult.h"
#include "Recordings.h"
#include "RunningProgram.h"
#include "Tree.h"

#include <gtest/gtest.h>
#include <sys/types.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// The command line with a virtual camera at the system's USB.
class UsbProgramTest : public testing::Test {
protected:
    void SetUp() override {
        if (!MockedUsb::isPossible()) GTEST_SKIP() << "takes umockdev, and no sanitizer";
        folder.write("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
        folder.write("card/DCIM/100TEST/IMG_0002.CR3", std::string(3'000'000, 'x'));
        device.settings = {{"store1", folder.path("card")}, {"extension", "11"}};
    }

    TemporaryFolder folder;
    VirtualBus::Device device{.vendor = "04a9", .product = "32f4", .serial = "S1001"};
};

TEST_F(UsbProgramTest, ShowsACameraByTheNameThatIsKnownOfIt) {
    const auto shown = MockedUsb(device).call({"cameras"}).run();
    EXPECT_EQ(shown.exitStatus, 0) << shown.err;
    EXPECT_EQ(shown.out, "Canon EOS R5  serial:S1001\n");
}

TEST_F(UsbProgramTest, ImportsTheWholeCard) {
    const MockedUsb usb(device);
    const std::string destination = folder.path("destination");
    const std::vector<std::string> import{"import", "--to", destination, "--no-by-type"};
    const auto first = usb.call(import).run();
    EXPECT_EQ(first.exitStatus, 0) << first.err;
    EXPECT_TRUE(tree(destination) == tree(folder.path("card/DCIM/100TEST")));

    const auto second = usb.call(import).run();
    EXPECT_EQ(second.exitStatus, 0) << second.err;
    EXPECT_TRUE(second.out.find("✓") == std::string::npos) << second.out;
}

TEST_F(UsbProgramTest, HasTheDesktopLetGoOfTheCamera) {
    if (!MockedUsb::hasFileManager()) GTEST_SKIP() << "takes gvfs-backends and libglib2.0-bin";
    const MockedUsb usb(device);
    const std::string destination = folder.path("destination");
    const std::vector<std::string> import{"import", "--to", destination, "--no-by-type"};
    const auto lonely =
        usb.callWhileMounted(import, {"env", "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"})
            .run();
    EXPECT_EQ(lonely.exitStatus, 3) << lonely.err;
    EXPECT_TRUE(lonely.err.find("Ein anderes Programm gibt die Kamera Canon EOS R5 nicht frei") !=
                std::string::npos)
        << lonely.err;
    const auto released = usb.callWhileMounted(import).run();
    EXPECT_EQ(released.exitStatus, 0) << released.err;
    EXPECT_TRUE(tree(destination) == tree(folder.path("card/DCIM/100TEST")));
}

TEST_F(UsbProgramTest, SaysThatAHeldCameraCannotTellWhoItIs) {
    device.serial = "";
    device.vendor = "1209";
    device.product = "0001";
    device.settings["serial"] = "P1001";
    device.settings["busy"] = "1000";
    const MockedUsb usb(device);
    const std::string unknown = "persistent:usb:1209:0001:1-1";
    EXPECT_EQ(usb.call({"cameras"}).run().out, "Testkamera  " + unknown + "  (vorläufig)\n");
    EXPECT_EQ(usb.call({"cameras", "--json"}).run().out,
              "{\"event\":\"camera\",\"name\":\"Testkamera\",\"identity\":null}\n");
    const auto plan = usb.call({"plan", "--camera", "serial:P1001"}).run();
    EXPECT_EQ(plan.exitStatus, 3);
    EXPECT_EQ(plan.err,
              "Kamera „serial:P1001“ nicht gefunden. Die Kennung der Kamera Testkamera ist noch "
              "nicht bekannt: Ein anderes Programm benutzt sie, sie antwortet nicht, oder der "
              "angegebene Ordner ist leer.\n");
    usb.usb().change("1-1", {{"busy", "0"}});
    for (const std::string& wish : {std::string("serial:P1001"), unknown})
        EXPECT_EQ(usb.call({"plan", "--camera", wish}).run().exitStatus, 0) << wish;
}

TEST_F(UsbProgramTest, ProvesThatTheCardIsAtTheDestination) {
    const MockedUsb usb(device);
    const std::string destination = folder.path("destination");
    const std::vector<std::string> verify{"verify", "--to", destination, "--content"};
    ASSERT_EQ(usb.call({"import", "--to", destination, "--no-by-type"}).run().exitStatus, 0);
    const auto equal = usb.call(verify).run();
    EXPECT_EQ(equal.exitStatus, 0) << equal.out << equal.err;
    EXPECT_TRUE(
        equal.out.ends_with("✓ Alle 2 Dateien (3 MB) sind am Ziel, Byte für Byte gleich.\n"))
        << equal.out;

    folder.write("destination/IMG_0001.JPG", "ein BilD");
    const Tree there = tree(destination);
    const auto different = usb.call(verify).run();
    EXPECT_EQ(different.exitStatus, 1) << different.err;
    EXPECT_TRUE(different.out.contains("✗ IMG_0001.JPG  (8 Byte): Zwilling")) << different.out;
    EXPECT_EQ(tree(destination), there);
}

TEST_F(UsbProgramTest, TellsWhatElseIsOnTheCard) {
    for (const std::string name : {"100TEST/IMG_0001.CR4", "100TEST/IMG_0003.XMP", "INDEX.CTG"})
        folder.write("card/DCIM/" + name, "x");
    folder.write("card/.alt/IMG_0009.JPG", "x");
    const MockedUsb usb(device);
    const auto verified = usb.call({"verify", "--to", folder.makeFolder("destination")}).run();
    EXPECT_EQ(verified.exitStatus, 1) << verified.err;
    EXPECT_TRUE(verified.out.ends_with(
        "\nℹ︎ Nicht geprüft: 2 Dateien anderer Art (CR4, XMP), Verstecktes (.alt).\n"
        "✗ Nicht löschen: am Ziel 0 von 2 Dateien (3 MB), 2 fehlen.\n"))
        << verified.out;
}

TEST_F(UsbProgramTest, LeavesNoCopiesWhereAProofIsInterrupted) {
    const MockedUsb usb(device);
    const std::string destination = folder.path("destination");
    ASSERT_EQ(usb.call({"import", "--to", destination, "--no-by-type"}).run().exitStatus, 0);
    usb.usb().change("1-1", {{"rate", "300000"}});
    const ProgramCall verify = usb.call({"verify", "--to", destination, "--content"});
    const auto copies = [&cache = verify.environment.at("XDG_CACHE_HOME")] {
        return std::ranges::count_if(tree(cache), [](const auto& each) {
            return each.first.find("/verify/karte-") != std::string::npos;
        });
    };
    RunningProgram mocker(verify);
    // That takes ten seconds.
    while (copies() == 0 && !mocker.hasEnded()) std::this_thread::yield();
    EXPECT_GT(copies(), 0);
    const std::string process = std::to_string(mocker.process());
    pid_t program = 0;
    std::ifstream("/proc/" + process + "/task/" + process + "/children") >> program;
    ASSERT_GT(program, 0);
    ::kill(program, SIGINT);
    const auto result = mocker.finish();
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    EXPECT_EQ(copies(), 0);
}

TEST_F(UsbProgramTest, LeavesTheUsbAloneWhereACardIsGiven) {
    const auto shown = MockedUsb(device).call({"cameras", "--card", folder.path("card")}).run();
    EXPECT_EQ(shown.exitStatus, 0) << shown.err;
    EXPECT_TRUE(shown.out.find("serial:S1001") == std::string::npos) << shown.out;
}

/// A real camera, all of whose answers were recorded once.
class RecordedImportTest : public testing::Test {
protected:
    void SetUp() override {
        if (!MockedUsb::isPossible()) GTEST_SKIP() << "takes umockdev, and no sanitizer";
        if (!areThereRecordings()) GTEST_SKIP() << "no recordings in " << recordings();
    }

    const TemporaryFolder folder;
};

TEST_F(RecordedImportTest, GivesThePicturesTheirNamesAndTimes) {
    const std::string pictures = folder.makeFolder("pictures");
    const std::string destination = folder.makeFolder("destination");
    ASSERT_TRUE(succeeds(
        {"tar", "-xf", recordings() / "test-photos.tar", "-C", pictures, "--no-same-owner"}));
    ProgramCall import = mockedCall(folder);
    import.arguments = {
        "-d",        recordings() / "sx200-2530.umockdev",
        "-i",        "/dev/bus/usb/001/011=" + (recordings() / "sx200-2530.ioctl").string(),
        "--",        BILDKURIER_CLI,
        "import",    "--to",
        destination, "--no-by-type"};
    const auto imported = import.run();
    EXPECT_EQ(imported.exitStatus, 0) << imported.out << imported.err;
    const fs::path originals = pictures + "/DCIM/100CANON";
    EXPECT_TRUE(tree(destination) == tree(originals));
    for (const auto& original : fs::directory_iterator(originals)) {
        const fs::path copy = destination / original.path().filename();
        EXPECT_EQ(fs::last_write_time(copy), original.last_write_time()) << copy;
    }
}

}  // namespace
}  // namespace bildkurier
