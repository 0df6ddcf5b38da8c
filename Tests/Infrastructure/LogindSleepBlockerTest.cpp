// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "LinePipe.h"
#include "LogindSleepBlocker.h"
#include "ManualRunLoop.h"
#include "MockLogind.h"
#include "PrivateBus.h"
#include "TemporaryFolder.h"
#include "ThreadPool.h"

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

    /// Of whatever is to be done by now.
    void begin(LogindSleepBlocker& blocker, const std::string& reason = "Bildkurier läuft") {
        blocker.begin(reason);
        loop.settle();
    }

    ManualRunLoop loop;

private:
    std::optional<PrivateBus> bus_;
};

TEST_F(LogindSleepBlockerTest, HoldsWhatLogindGivesUntilTheEnd) {
    const MockLogind logind;
    LogindSleepBlocker blocker(loop);
    begin(blocker);
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, AsksOnceHoweverOftenItBegins) {
    const MockLogind logind;
    LogindSleepBlocker blocker(loop);
    begin(blocker);
    begin(blocker, "noch einmal");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, EndsOnceHoweverOftenItIsTold) {
    const MockLogind logind;
    LogindSleepBlocker blocker(loop);
    blocker.end();
    for (int i = 0; i < 3; ++i) {
        begin(blocker);
        EXPECT_EQ(logind.nextEvent(), inhibition);
        blocker.end();
        blocker.end();
        EXPECT_EQ(logind.nextEvent(), "released");
    }
}

TEST_F(LogindSleepBlockerTest, EndsWithItsObject) {
    const MockLogind logind;
    auto blocker = std::make_unique<LogindSleepBlocker>(loop);
    begin(*blocker);
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.reset();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, EndsWhenItsProcessIsKilled) {
    const MockLogind logind;
    const LinePipe begun;
    ChildProcess importing([&] {
        LogindSleepBlocker blocker(loop);
        begin(blocker);
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
    LogindSleepBlocker blocker(loop);
    begin(blocker);
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
    LogindSleepBlocker blocker(loop);
    begin(blocker);
    EXPECT_EQ(logind.nextEvent(), inhibition);
    EXPECT_EQ(logind.nextEvent(), "idle|Bildkurier|Bildkurier läuft|block");
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, DoesNothingWithoutLogindAndAsksAgainTheNextTime) {
    LogindSleepBlocker blocker(loop);
    begin(blocker);
    blocker.end();
    const MockLogind logind;
    begin(blocker);
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, DoesNotWaitLongForALogindThatIsSilent) {
    const MockLogind logind(MockLogind::Manner::isSilent);
    LogindSleepBlocker blocker(loop);
    EXPECT_LT(duration([&] { begin(blocker); }), std::chrono::seconds(2));
    EXPECT_EQ(logind.nextEvent(), inhibition);
}

TEST_F(LogindSleepBlockerTest, AsksInTheBackgroundAndOnlyWhileItIsWanted) {
    const MockLogind logind;
    LogindSleepBlocker blocker(loop);
    blocker.begin("zu früh beendet");
    blocker.end();
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(loop.backgroundTasks(), 2U);
    loop.settle();
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
}

TEST_F(LogindSleepBlockerTest, LetsGoOfWhatComesAfterTheEnd) {
    const MockLogind logind;
    std::optional<ThreadPool> pool(std::in_place);
    LogindSleepBlocker blocker(*pool);
    blocker.begin("Bildkurier läuft");
    EXPECT_EQ(logind.nextEvent(), inhibition);
    blocker.end();
    EXPECT_EQ(logind.nextEvent(), "released");
    pool.reset();
}

TEST(LogindSleepBlocker, DoesNothingWithoutABus) {
    const TemporaryFolder folder;
    for (const auto& address : {"unix:path=" + folder.path("fehlt"), std::string("unsinn")}) {
        const EnvironmentVariable systemBus("DBUS_SYSTEM_BUS_ADDRESS", address);
        ManualRunLoop loop;
        LogindSleepBlocker blocker(loop);
        blocker.begin("Bildkurier läuft");
        EXPECT_LT(duration([&] { loop.settle(); }), std::chrono::seconds(1));
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
    ManualRunLoop loop;
    LogindSleepBlocker blocker(loop);
    blocker.begin("Bildkurier läuft");
    EXPECT_LT(duration([&] { loop.settle(); }), std::chrono::seconds(2));
}

}  // namespace

}  // namespace bildkurier
