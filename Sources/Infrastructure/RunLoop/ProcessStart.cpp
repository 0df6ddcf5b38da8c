// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProcessStart.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace bildkurier {

void prepareProcess() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // A new file gets the lowest number that is free: this one.
        if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
    }
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace bildkurier
