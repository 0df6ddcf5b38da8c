// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Kernel.h"

#include "Next.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace bildkurier::faults {
namespace {

constinit Next<long(long, long, long, long, long)> systemCall("syscall");

long call(long number, long first = 0, long second = 0, long third = 0, long fourth = 0) {
    return systemCall(number, first, second, third, fourth);
}

long address(const void* pointer) { return reinterpret_cast<long>(pointer); }

}  // namespace

std::size_t Kernel::descriptorPath(int descriptor, char* path, std::size_t room) {
    std::array<char, 32> link;
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const long length = call(SYS_readlinkat, AT_FDCWD, address(link.data()), address(path),
                             static_cast<long>(room));
    return length > 0 ? static_cast<std::size_t>(length) : 0;
}

std::size_t Kernel::workingFolder(char* path, std::size_t room) {
    const long withEnd = call(SYS_getcwd, address(path), static_cast<long>(room));
    return withEnd > 0 ? static_cast<std::size_t>(withEnd - 1) : 0;
}

int Kernel::openLog(const char* path) {
    return static_cast<int>(
        call(SYS_openat, AT_FDCWD, address(path), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
}

void Kernel::append(int log, std::string_view text) {
    call(SYS_write, log, address(text.data()), static_cast<long>(text.size()));
}

void Kernel::raise(int signal) { call(SYS_kill, call(SYS_getpid), signal); }

// Sent to this very thread: another one might take it only after this one has gone on.
void Kernel::stop() { call(SYS_tgkill, call(SYS_getpid), call(SYS_gettid), SIGSTOP); }

bool Kernel::isPending(int signal) {
    std::uint64_t pending = 0;
    call(SYS_rt_sigpending, address(&pending), sizeof pending);
    return (pending >> static_cast<unsigned>(signal - 1) & 1U) != 0;
}

void Kernel::sleepAMillisecond() {
    const std::timespec time{.tv_sec = 0, .tv_nsec = 1'000'000};
    call(SYS_nanosleep, address(&time));
}

}  // namespace bildkurier::faults
