// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryFolder.h"
#include "UsbBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace bildkurier {
namespace {

using Attributes = std::map<std::string, std::string>;

class UsbBusTest : public testing::Test {
protected:
    void add(const std::string& place, const Attributes& attributes) const {
        for (const auto& [name, value] : attributes) folder.write(place + "/" + name, value + "\n");
    }
    std::vector<std::string> ports() const {
        std::vector<std::string> found;
        for (const auto& place : bus.cameras()) found.push_back(place.port);
        return found;
    }

    TemporaryFolder folder;
    UsbBus bus{folder.path(), "/dev/none"};
    const Attributes camera{{"busnum", "1"},
                            {"devnum", "11"},
                            {"idVendor", "04a9"},
                            {"idProduct", "32f4"},
                            {"product", "Canon Digital Camera  "},
                            {"serial", "0123"},
                            {"1-1:1.0/bInterfaceClass", "06"},
                            {"1-1:1.0/bInterfaceSubClass", "01"},
                            {"1-1:1.0/bInterfaceProtocol", "01"}};
};

TEST_F(UsbBusTest, ReadsWhatADeviceSaysOfItself) {
    add("1-1.5", camera);
    const UsbPlace expected{.folder = folder.path("1-1.5"),
                            .node = "/dev/none/001/011",
                            .port = "usb:001,011",
                            .vendor = "04a9",
                            .product = "32f4",
                            .name = "Canon Digital Camera",
                            .serial = "0123",
                            .mountName = ""};
    EXPECT_EQ(bus.cameras(), std::vector{expected});
}

TEST_F(UsbBusTest, PassesOverWhatIsNoCamera) {
    const struct {
        const char* what;
        Attributes otherwise;
    } cases[] = {
        {"a card reader", {{"1-1:1.0/bInterfaceClass", "08"}}},
        {"another image device", {{"1-1:1.0/bInterfaceSubClass", "02"}}},
        {"another protocol", {{"1-1:1.0/bInterfaceProtocol", "00"}}},
        {"something without a number", {{"devnum", ""}}},
        {"something without a bus", {{"busnum", "eins"}}},
    };
    for (const auto& [what, otherwise] : cases) {
        add("1-1", camera);
        add("1-1", otherwise);
        EXPECT_EQ(ports(), std::vector<std::string>()) << what;
    }
}

TEST_F(UsbBusTest, FindsACameraBehindAnotherInterface) {
    Attributes composite = camera;
    composite["1-1:1.0/bInterfaceClass"] = "08";
    composite["1-1:1.1/bInterfaceClass"] = "06";
    composite["1-1:1.1/bInterfaceSubClass"] = "01";
    composite["1-1:1.1/bInterfaceProtocol"] = "01";
    add("1-1", composite);
    EXPECT_EQ(ports(), std::vector<std::string>{"usb:001,011"});
}

TEST_F(UsbBusTest, AnswersWithTheSameOrderEachTime) {
    Attributes second = camera;
    second["devnum"] = "7";
    add("1-2", second);
    add("1-1", camera);
    EXPECT_EQ(ports(), (std::vector<std::string>{"usb:001,011", "usb:001,007"}));
}

TEST_F(UsbBusTest, TakesADeviceThatWasPluggedInAgainForAnother) {
    add("1-1", camera);
    const UsbPlace place = bus.cameras().at(0);
    EXPECT_TRUE(bus.isThere(place));
    add("1-1", {{"devnum", "12"}});
    EXPECT_FALSE(bus.isThere(place));
}

TEST_F(UsbBusTest, IsEmptyWhereThereIsNone) {
    EXPECT_EQ(UsbBus(folder.path("nothing"), "").cameras(), std::vector<UsbPlace>());
    EXPECT_FALSE(
        UsbBus(folder.path("nothing"), "").isThere({.folder = folder.path("nothing/1-1")}));
}

TEST_F(UsbBusTest, IsWatchedByNobodyButInTheSystemsPlace) { EXPECT_FALSE(bus.isWatched()); }

}  // namespace
}  // namespace bildkurier
