// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "DesktopMounts.h"
#include "EnvironmentVariable.h"
#include "PrivateBus.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

namespace bildkurier {
namespace {

using std::chrono::milliseconds;

const UsbPlace held{.port = "usb:001,011", .mountName = "Kamera_S1"};
constexpr milliseconds patience{60'000};

/// Whether releasing a camera takes no longer than it may, in a process that meets its desktop for
/// the first time.
bool isQuick(const std::function<void()>& release) {
    return ChildProcess([&release] {
               const auto begin = std::chrono::steady_clock::now();
               release();
               return std::chrono::steady_clock::now() - begin < std::chrono::seconds(10);
           })
        .wentWell();
}

TEST(DesktopMounts, AreLeftAloneWhereThereIsNoDesktop) {
    // Not that of whoever runs this.
    const EnvironmentVariable bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    EXPECT_TRUE(isQuick([] { releaseFromDesktop(held, UsbSession(), patience); }));
}

/// A desktop whose file manager never comes up.
class SilentDesktopTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateBus::isInstalled() || ::access("/usr/libexec/gvfsd", X_OK) != 0)
            GTEST_SKIP() << "takes dbus-daemon and gvfs";
        const std::string script = folder.path("daemon");
        folder.write("daemon", "echo $$ > " + process + "\nexec sleep 20\n");
        folder.write("dbus-1/services/org.gtk.vfs.Daemon.service",
                     "[D-BUS Service]\nName=org.gtk.vfs.Daemon\nExec=/bin/sh " + script + "\n");
        bus.emplace();
    }

    void TearDown() override {
        if (pid_t daemon = 0; std::ifstream(process) >> daemon) ::kill(daemon, SIGKILL);
    }

    const TemporaryFolder folder;
    const std::string process = folder.path("process");
    const EnvironmentVariable data{"XDG_DATA_HOME", folder.path()};
    std::optional<PrivateBus> bus;
};

TEST_F(SilentDesktopTest, IsWaitedForNoLongerThanAgreed) {
    EXPECT_TRUE(isQuick([] { releaseFromDesktop(held, UsbSession(), milliseconds(200)); }));
}

TEST_F(SilentDesktopTest, IsWaitedForNoLongerThanTheSessionLasts) {
    EXPECT_TRUE(isQuick([] {
        UsbSession session;
        const std::jthread closing([&session] {
            session.endsWithin(milliseconds(200));
            session.end(UsbSession::End::Closed);
        });
        releaseFromDesktop(held, session, patience);
    }));
}

}  // namespace
}  // namespace bildkurier
