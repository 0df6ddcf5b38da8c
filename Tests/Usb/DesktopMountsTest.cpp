// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DesktopMounts.h"
#include "EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(DesktopMounts, AreLeftAloneWhereNobodyHoldsTheCamera) {
    // Not the desktop of whoever runs this.
    const EnvironmentVariable bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const auto begin = std::chrono::steady_clock::now();
    releaseFromDesktop({.port = "usb:001,011", .mountName = "Kamera_S1"},
                       std::chrono::milliseconds(100));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace bildkurier
