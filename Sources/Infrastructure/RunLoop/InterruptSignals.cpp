// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InterruptSignals.h"

#include "SystemCall.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

/// Counts the signals; what a handler can reach.
std::atomic<int> counter = -1;

void count(int /*signal*/) {
    const int before = errno;
    eventfd_write(counter, 1);
    errno = before;
}

}  // namespace

InterruptSignals::InterruptSignals(MainQueue& main, std::function<void()> interrupted)
    : main_(main),
      interrupted_(std::move(interrupted)),
      arrived_(eventfd(0, EFD_CLOEXEC)),
      end_(eventfd(0, EFD_CLOEXEC)) {
    if (!arrived_ || !end_) throw std::system_error(errno, std::generic_category(), "eventfd");
    counter = arrived_.get();
    thread_ = std::thread([this] { wait(); });
    struct sigaction counting{};
    counting.sa_handler = count;
    counting.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before{};
        sigaction(signal, nullptr, &before);
        // What whoever started the program wants ignored (nohup) stays so.
        if (before.sa_handler == SIG_IGN) continue;
        previous_[signal] = before;
        sigaction(signal, &counting, nullptr);
    }
}

InterruptSignals::~InterruptSignals() {
    for (const auto& [signal, action] : previous_) sigaction(signal, &action, nullptr);
    counter = -1;
    eventfd_write(end_.get(), 1);
    thread_.join();
}

void InterruptSignals::wait() const {
    std::array<pollfd, 2> watched{{{arrived_.get(), POLLIN, 0}, {end_.get(), POLLIN, 0}}};
    for (;;) {
        const auto poll = [&] { return ::poll(watched.data(), watched.size(), -1); };
        if (retried(poll) < 0) {
            // When the system is short of memory, say, it must not be asked without a pause.
            std::this_thread::sleep_for(std::chrono::seconds(1));
            continue;
        }
        if (watched[1].revents != 0) return;
        eventfd_t signals = 0;
        if (eventfd_read(arrived_.get(), &signals) != 0) continue;
        // One asks to end, another not to wait for it. No more can be meant.
        for (auto left = std::min<eventfd_t>(signals, 2); left > 0; --left)
            main_.post(interrupted_);
    }
}

}  // namespace bildkurier
