// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventLoop.h"
#include "InterruptSignals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
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
