// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ChildProcess.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

int exitStatus(const std::function<bool()>& work) {
    try {
        return work() ? 0 : 1;
    } catch (...) {
        return 1;
    }
}

}  // namespace

ChildProcess::ChildProcess(const std::function<bool()>& work) : process_(::fork()) {
    if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (process_ > 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::_exit(exitStatus(work));
}

ChildProcess::~ChildProcess() { kill(); }

bool ChildProcess::wentWell() {
    int status = -1;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void ChildProcess::kill() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    wentWell();
}

}  // namespace bildkurier
