// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InterruptSignals.h"

#include "SystemCall.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

/// Those that whoever started the program wants ignored (nohup) stay so.
sigset_t endSignals() {
    sigset_t set{};
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action{};
        const bool known = sigaction(signal, nullptr, &action) == 0;
        if (known && action.sa_handler != SIG_IGN) sigaddset(&set, signal);
    }
    return set;
}

}  // namespace

InterruptSignals::InterruptSignals(MainQueue& main, std::function<void()> interrupted)
    : main_(main), interrupted_(std::move(interrupted)) {
    const sigset_t set = endSignals();
    signals_ = FileDescriptor(signalfd(-1, &set, SFD_CLOEXEC));
    end_ = FileDescriptor(eventfd(0, EFD_CLOEXEC));
    if (!signals_ || !end_) throw std::system_error(errno, std::generic_category(), "signalfd");
    pthread_sigmask(SIG_BLOCK, &set, &previous_);
    thread_ = std::thread([this] { wait(); });
}

InterruptSignals::~InterruptSignals() {
    eventfd_write(end_.get(), 1);
    thread_.join();
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

void InterruptSignals::wait() const {
    std::array<pollfd, 2> watched{{{signals_.get(), POLLIN, 0}, {end_.get(), POLLIN, 0}}};
    for (;;) {
        const auto poll = [&] { return ::poll(watched.data(), watched.size(), -1); };
        if (retried(poll) < 0) {
            // When the system is short of memory, say, it must not be asked without a pause.
            std::this_thread::sleep_for(std::chrono::seconds(1));
            continue;
        }
        if (watched[1].revents != 0) return;
        signalfd_siginfo info{};
        if (read(signals_.get(), &info, sizeof info) == sizeof info) main_.post(interrupted_);
    }
}

}  // namespace bildkurier
