// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemCallFilter.h"

#include "FileDescriptor.h"

#include <linux/filter.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <future>
#include <thread>

namespace bildkurier {

namespace {

/// Puts this thread's `calls` to whoever reads from the descriptor.
FileDescriptor installFilter(const std::vector<int>& calls) {
    std::vector<sock_filter> code{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const int call : calls) {
        code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
        code.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    }
    code.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program{static_cast<unsigned short>(code.size()), code.data()};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return {};
    return FileDescriptor(static_cast<int>(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER,
                                                     SECCOMP_FILTER_FLAG_NEW_LISTENER, &program)));
}

/// Until the filtered thread has ended.
void answerCalls(const FileDescriptor& listener, const SystemCallRule& rule) {
    while (true) {
        pollfd waiting{.fd = listener.get(), .events = POLLIN, .revents = 0};
        ::poll(&waiting, 1, -1);
        if (!(waiting.revents & POLLIN)) return;
        seccomp_notif asked{};
        if (::ioctl(listener.get(), SECCOMP_IOCTL_NOTIF_RECV, &asked) != 0) continue;
        const int decision = rule(asked.data);
        seccomp_notif_resp answer{.id = asked.id, .val = 0, .error = 0, .flags = 0};
        if (decision == 0) answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
        if (decision > 0) answer.error = -decision;
        ::ioctl(listener.get(), SECCOMP_IOCTL_NOTIF_SEND, &answer);
    }
}

}  // namespace

/// Has the kernel copy it: thread sanitizer does not know that the thread that owns it waits.
std::string pathArgument(const seccomp_data& call) {
    std::array<char, PATH_MAX> path{};
    const iovec copy{.iov_base = path.data(), .iov_len = path.size() - 1};
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const iovec argument{.iov_base = reinterpret_cast<void*>(call.args[1]),
                         .iov_len = path.size() - 1};
    ::process_vm_readv(::getpid(), &copy, 1, &argument, 1, 0);
    return path.data();
}

bool runFiltered(const std::vector<int>& calls, const SystemCallRule& rule,
                 const std::function<void()>& action) {
    std::promise<FileDescriptor> installed;
    auto filter = installed.get_future();
    const std::jthread thread([&] {
        FileDescriptor listener = installFilter(calls);
        const bool filtered = static_cast<bool>(listener);
        installed.set_value(std::move(listener));
        if (filtered) action();
    });
    const FileDescriptor listener = filter.get();
    if (!listener) return false;
    answerCalls(listener, rule);
    return true;
}

}  // namespace bildkurier
