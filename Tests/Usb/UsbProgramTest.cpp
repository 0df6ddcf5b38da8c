// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MockedUsb.h"
#include "ProgramResult.h"
#include "Tree.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

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

TEST_F(UsbProgramTest, ProvesThatTheCardIsAtTheDestination) {
    const MockedUsb usb(device);
    const std::string destination = folder.path("destination");
    const std::vector<std::string> verify{"verify", "--to", destination, "--content"};
    ASSERT_EQ(usb.call({"import", "--to", destination, "--no-by-type"}).run().exitStatus, 0);
    const auto equal = usb.call(verify).run();
    EXPECT_EQ(equal.exitStatus, 0) << equal.out << equal.err;
    EXPECT_EQ(equal.out, "✓ Alle 2 Dateien (3 MB) sind am Ziel, Byte für Byte gleich.\n");

    folder.write("destination/IMG_0001.JPG", "ein BilD");
    const Tree there = tree(destination);
    const auto different = usb.call(verify).run();
    EXPECT_EQ(different.exitStatus, 1) << different.err;
    EXPECT_TRUE(different.out.starts_with("✗ IMG_0001.JPG  (8 Byte): Zwilling")) << different.out;
    EXPECT_EQ(tree(destination), there);
}

TEST_F(UsbProgramTest, LeavesTheUsbAloneWhereACardIsGiven) {
    const auto shown = MockedUsb(device).call({"cameras", "--card", folder.path("card")}).run();
    EXPECT_EQ(shown.exitStatus, 0) << shown.err;
    EXPECT_TRUE(shown.out.find("serial:S1001") == std::string::npos) << shown.out;
}

}  // namespace
}  // namespace bildkurier
