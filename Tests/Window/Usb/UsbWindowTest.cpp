// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OpenWindow.h"
#include "PrivateMounts.h"
#include "SystemUsb.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace bildkurier {
namespace {

TEST(BildkurierAtTheUsb, GoesOnWithACameraThatIsPulledInTheMiddleOfAFile) {
    if (!mountPrivately()) GTEST_SKIP() << "mounting takes root";
    SystemUsb usb;
    OpenWindow window({.camera = OpenWindow::Camera::none});
    const std::string camera = window.home.path("kamera");
    for (const std::string name : {"IMG_0001.JPG", "IMG_0002.JPG", "IMG_0003.JPG"})
        window.home.write("kamera/DCIM/100TEST/" + name, name + std::string(200'000, name[7]));
    const VirtualBus::Device device{
        .serial = "S1001",
        .settings = {
            {"store1", camera}, {"fault", "pull"}, {"fault_at", "300000"}, {"faults", "1"}}};
    EXPECT_TRUE(window.has("heading", "Keine Kamera"));
    EXPECT_TRUE(window.has("label", "Kamera einschalten und per USB verbinden"));
    EXPECT_TRUE(window.has("label", "Nicht verbunden"));
    EXPECT_TRUE(window.has("label", "Keine Kamera verbunden"));
    EXPECT_EQ(window.description("push button", "Importieren"), "Nicht verfügbar");

    usb.bus.plugIn("1-1", device);
    EXPECT_TRUE(window.has("heading", "Testkamera"));
    ASSERT_TRUE(window.has("push button", "3 importieren"));
    EXPECT_TRUE(window.has("label", "Verbunden"));
    OpenWindow::press("Return");
    EXPECT_TRUE(
        window.hears("Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist."));
    EXPECT_TRUE(window.has("heading", "Keine Kamera"));
    const Tree card = tree(camera + "/DCIM/100TEST");
    const Tree firstOnly{*card.begin()};
    EXPECT_EQ(tree(window.destination + "/JPG"), firstOnly);
    ASSERT_FALSE(usb.bus.isPluggedIn("1-1"));

    usb.bus.plugInAgain("1-1");
    EXPECT_TRUE(window.has("label", "Alles bereits im Zielordner"));
    EXPECT_EQ(tree(window.destination + "/JPG"), card);
    EXPECT_EQ(tree(window.destination).size(), 1 + card.size());
    ASSERT_TRUE(window.goTo("push button", "Protokoll (6)"));
    OpenWindow::press("space");
    ASSERT_TRUE(window.has("text", "Protokoll"));
    static const std::regex log(
        "✓ JPG/IMG_0001.JPG  \\(200 KB\\)\n"
        "✗ ..:..:.. Kamera getrennt, 1 von 3 geladen\\.\n"
        "↻ ..:..:.. Fortsetzung nach Trennung: noch 2 Dateien\\.\n"
        "✓ JPG/IMG_0002.JPG  \\(200 KB\\)\n"
        "✓ JPG/IMG_0003.JPG  \\(200 KB\\)\n"
        "Fertig: 2 geladen .*");
    EXPECT_TRUE(std::regex_match(window.text("Protokoll"), log)) << window.text("Protokoll");
    OpenWindow::press("ctrl+q");
    const auto result = window.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace bildkurier
