// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountWatch.h"

#include "SystemCall.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <system_error>
#include <thread>
#include <utility>

namespace bildkurier {

namespace {

/// Milliseconds as poll(2) wants them, never too early.
int timeoutUntil(const std::optional<Instant>& instant) {
    constexpr int never = -1;
    if (!instant) return never;
    const Duration left = *instant - Instant(std::chrono::steady_clock::now());
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(milliseconds, 0, INT_MAX));
}

}  // namespace

MountWatch::MountWatch(Look look, std::vector<std::string> folders)
    : look_(std::move(look)), folders_(std::move(folders)), end_(::eventfd(0, EFD_CLOEXEC)) {
    if (!end_) throw std::system_error(errno, std::generic_category(), "eventfd");
    thread_ = std::thread([this] { watch(); });
}

MountWatch::~MountWatch() {
    ::eventfd_write(end_.get(), 1);
    thread_.join();
}

void MountWatch::watch() {
    // Opened before the table is first read, so that no change falls in between.
    const FileDescriptor changes(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    std::array<pollfd, 3> watched{{{.fd = changes.get(), .events = POLLERR | POLLPRI, .revents = 0},
                                   {.fd = -1, .events = POLLIN, .revents = 0},
                                   {.fd = end_.get(), .events = POLLIN, .revents = 0}}};
    const auto& [table, told, end] = watched;
    while (end.revents == 0) {
        folders_.renew();
        watched[1].fd = folders_.descriptor();
        const auto next = look_(readMountTable());
        const auto wait = [&] {
            return ::poll(watched.data(), watched.size(), timeoutUntil(next));
        };
        // Most of what comes and goes in the folders above has other names.
        while (true) {
            const int answer = retried(wait);
            // When the system is short of memory, say, it must not be asked without a pause.
            if (answer < 0) std::this_thread::sleep_for(std::chrono::seconds(1));
            if (answer <= 0 || table.revents != 0 || end.revents != 0 || folders_.takeChange())
                break;
        }
    }
}

}  // namespace bildkurier
