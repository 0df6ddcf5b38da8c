// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"
#include "InterruptSignals.h"
#include "RunningProgram.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <memory>
#include <optional>

namespace bildkurier {
namespace {

TEST(InterruptSignals, CallOnTheMainQueue) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EventLoop loop;
        int calls = 0;
        const InterruptSignals signals(loop, [&] {
            if (++calls == 2) return loop.stop();
            ::kill(::getpid(), signal);
        });
        ::kill(::getpid(), signal);
        loop.run();
        EXPECT_EQ(calls, 2);
    }
}

TEST(InterruptSignals, EndTheProgramAgainAfterwards) {
    EventLoop loop;
    {
        const InterruptSignals signals(loop, [] {});
    }
    EXPECT_EXIT(std::raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
}

TEST(InterruptSignals, AreHeardOfThoughOtherThreadsWereThereBefore) {
    EventLoop loop;
    const auto forever = std::make_shared<std::promise<void>>();
    const auto sleeper =
        std::async(std::launch::async, [over = forever->get_future()] { over.wait(); });
    {
        const InterruptSignals signals(loop, [&] { loop.stop(); });
        ::kill(::getpid(), SIGTERM);
        loop.run();
    }
    forever->set_value();
}

TEST(InterruptSignals, EndTheProgramsStartedMeanwhileAsEver) {
    EventLoop loop;
    const InterruptSignals signals(loop, [] {});
    RunningProgram other({.path = "/bin/sleep", .arguments = {"600"}});
    other.send(SIGTERM);
    EXPECT_EQ(other.finish().signal, SIGTERM);
}

TEST(InterruptSignals, LeaveIgnoredWhatWasIgnored) {
    struct sigaction before{};
    sigaction(SIGHUP, nullptr, &before);
    std::signal(SIGHUP, SIG_IGN);
    {
        EventLoop loop;
        int calls = 0;
        const InterruptSignals signals(loop, [&] {
            ++calls;
            loop.stop();
        });
        ::kill(::getpid(), SIGHUP);
        ::kill(::getpid(), SIGTERM);
        loop.run();
        EXPECT_EQ(calls, 1);
    }
    sigaction(SIGHUP, &before, nullptr);
}

}  // namespace
}  // namespace bildkurier
