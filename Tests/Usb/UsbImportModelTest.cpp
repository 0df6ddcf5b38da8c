// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbImportTest.h"

#include <filesystem>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

TEST_F(UsbImportTest, FindsACameraThatIsPluggedInAlready) {
    usb.plugIn("1-1", camera("S1"));
    start();
    runUntil([this] { return !model->cameras().empty(); });
    EXPECT_EQ(model->cameras().at(0)->name(), "Testkamera");
    EXPECT_EQ(model->cameras().at(0)->identity(), "serial:S1");
}

TEST_F(UsbImportTest, ImportsTheWholeCard) {
    add("card/DCIM/100TEST/IMG_0001.JPG", "ein Bild");
    addLarge("card/DCIM/100TEST/IMG_0002.JPG", 3'000'001, 2);
    addLarge("card/DCIM/101TEST/MVI_0003.MP4", 5'000'000, 3);
    add("card/DCIM/101TEST/SND_0004.WAV", "Ton", 3);
    usb.plugIn("1-1", camera());
    start();
    importAll();
    EXPECT_EQ(imported(), filesOf(card)) << testing::PrintToString(log());
    EXPECT_TRUE(hasLogged("Fertig: 4 geladen"));
}

}  // namespace
}  // namespace bildkurier
