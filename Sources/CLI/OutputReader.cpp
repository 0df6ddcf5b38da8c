// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OutputReader.h"

#include <poll.h>
#include <unistd.h>

namespace bildkurier {

bool outputReaderIsGone() {
    pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    return ::poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace bildkurier
