// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "LinePipe.h"
#include "LogindSleepBlocker.h"
#include "MockLogind.h"
#include "PrivateBus.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <optional>

namespace bildkurier {

namespace {

using Clock = std::chrono::steady_clock;

const std::string inhibition = "idle:sleep|Bildkurier|Bildkurier läuft|block";

/// How long a call takes.
template <class Call>
std::chrono::duration<double> duration(Call call) {
    const auto begin = Clock::now();
    call();
    return Clock::now() - begin;
}

class LogindSleepBlockerTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateBus::isInstalled()) GTEST_SKIP() << "There is no dbus-daemon.";
        bus_.emplace();
    }

private:
    std::optional<PrivateBus> bus_;
};

TEST_F(LogindSleepBlockerTest, HoldsWhatLogindGivesUntilTheEnd) {
    const MockLogind logind;
    LogindSleepBlocker blocker;
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, AsksOnceHoweverOftenItBegins) {
    const MockLogind logind;
    LogindSleepBlocker blocker;
    blocker.begin("Bildkurier läuft");
    blocker.begin("noch einmal");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, EndsOnceHoweverOftenItIsTold) {
    const MockLogind logind;
    LogindSleepBlocker blocker;
    blocker.end();
    for (int i = 0; i < 3; ++i) {
        blocker.begin("Bildkurier läuft");
        EXPECT_EQ(logind.nextEvent(), inhibition);
        blocker.end();
        blocker.end();
        EXPECT_EQ(logind.nextEvent(), "released");
    }
}

TEST_F(LogindSleepBlockerTest, EndsWithItsObject) {
    const MockLogind logind;
    auto blocker = std::make_unique<LogindSleepBlocker>();
    blocker->begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.reset();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, EndsWhenItsProcessIsKilled) {
    const MockLogind logind;
    const LinePipe begun;
    ChildProcess importing([&] {
        LogindSleepBlocker blocker;
        blocker.begin("Bildkurier läuft");
        begun.write("begun");
        while (true) ::pause();
        return true;
    });
    EXPECT_EQ(logind.nextEvent(), inhibition);
    ASSERT_EQ(begun.read(), "begun");
    importing.kill();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, DoesNotHandItOnToOtherPrograms) {
    const MockLogind logind;
    LogindSleepBlocker blocker;
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    const ChildProcess program([] {
        ::execl("/bin/sh", "sh", "-c", "exec sleep 600", nullptr);
        return false;
    });
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, ForbidsOnlyIdlingWhereTheUserMayNotForbidSleep) {
    const MockLogind logind(MockLogind::Manner::deniesSleep);
    LogindSleepBlocker blocker;
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    EXPECT_EQ(logind.nextEvent(), "idle|Bildkurier|Bildkurier läuft|block");
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, DoesNothingWithoutLogindAndAsksAgainTheNextTime) {
    LogindSleepBlocker blocker;
    blocker.begin("Bildkurier läuft");
    blocker.end();
    const MockLogind logind;
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, DoesNotWaitLongForALogindThatIsSilent) {
    const MockLogind logind(MockLogind::Manner::isSilent);
    LogindSleepBlocker blocker;
    EXPECT_LT(duration([&] { blocker.begin("Bildkurier läuft"); }), std::chrono::seconds(5));
    EXPECT_EQ(logind.nextEvent(), inhibition);
}

TEST(LogindSleepBlocker, DoesNothingWithoutABus) {
    const TemporaryFolder folder;
    for (const auto& address : {"unix:path=" + folder.path("fehlt"), std::string("unsinn")}) {
        const EnvironmentVariable systemBus("DBUS_SYSTEM_BUS_ADDRESS", address);
        LogindSleepBlocker blocker;
        EXPECT_LT(duration([&] { blocker.begin("Bildkurier läuft"); }), std::chrono::seconds(1));
        blocker.end();
    }
}

TEST(LogindSleepBlocker, DoesNotWaitLongForABusThatIsSilent) {
    const TemporaryFolder folder;
    const EnvironmentVariable systemBus("DBUS_SYSTEM_BUS_ADDRESS",
                                        "unix:path=" + folder.path("bus"));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    folder.path("bus").copy(address.sun_path, sizeof address.sun_path - 1);
    const FileDescriptor silent(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(silent.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent.get(), 1), 0);
    LogindSleepBlocker blocker;
    EXPECT_LT(duration([&] { blocker.begin("Bildkurier läuft"); }), std::chrono::seconds(5));
}

}  // namespace

}  // namespace bildkurier
