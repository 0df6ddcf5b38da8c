// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OrdinaryUser.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace bildkurier {

void runAsOrdinaryUser(const std::function<void()>& action) {
    if (::geteuid() != 0) return action();
    // The kernel gives every thread a user of its own; only the C library's calls set them all.
    std::jthread([&] {
        constexpr unsigned nobody = 65534;
        if (::syscall(SYS_setgroups, 0, nullptr) != 0 ||
            ::syscall(SYS_setresgid, nobody, nobody, nobody) != 0 ||
            ::syscall(SYS_setresuid, nobody, nobody, nobody) != 0)
            throw std::system_error(errno, std::generic_category(), "setresuid");
        action();
    }).join();
}

}  // namespace bildkurier
