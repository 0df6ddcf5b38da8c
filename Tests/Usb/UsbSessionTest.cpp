// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbSession.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

namespace bildkurier {
namespace {

TEST(UsbSession, EndsWhileTheDiskTakesItsTime) {
    UsbSession session;
    std::latch begun(1);
    std::latch ended(1);
    std::thread disk([&] {
        session.ifOpen("/", [&] {
            begun.count_down();
            ended.wait();
        });
    });
    begun.wait();
    session.end(UsbSession::End::Gone);
    EXPECT_TRUE(session.hasEnded());
    ended.count_down();
    disk.join();
}

TEST(UsbSession, LetsAFileBeMadeOnlyWhileItIsOpen) {
    UsbSession session;
    int made = 0;
    session.ifOpen("/", [&] { ++made; });
    session.end(UsbSession::End::Closed);
    session.ifOpen("/", [&] { ++made; });
    EXPECT_EQ(made, 1);
}

}  // namespace
}  // namespace bildkurier
