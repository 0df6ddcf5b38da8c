// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SigpipeHeldBack.h"

#include "SystemCall.h"

#include <pthread.h>
#include <signal.h>
#include <time.h>

namespace bildkurier {
namespace {

sigset_t onlySigpipe() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool sigpipeIsPending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

}  // namespace

SigpipeHeldBack::SigpipeHeldBack() {
    const auto sigpipe = onlySigpipe();
    pthread_sigmask(SIG_BLOCK, &sigpipe, &before_);
    wasPending_ = sigpipeIsPending();
}

SigpipeHeldBack::~SigpipeHeldBack() {
    // What a write of ours raised waits for this thread: taken off here, it ends nothing.
    if (!wasPending_ && sigpipeIsPending()) {
        const auto sigpipe = onlySigpipe();
        const timespec atOnce{};
        (void)retried([&] { return sigtimedwait(&sigpipe, nullptr, &atOnce); });
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace bildkurier
