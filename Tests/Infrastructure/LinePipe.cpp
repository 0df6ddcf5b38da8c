// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LinePipe.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace bildkurier {

LinePipe::LinePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    reading_ = FileDescriptor(ends[0]);
    writing_ = FileDescriptor(ends[1]);
}

void LinePipe::write(std::string_view line) const {
    const std::string whole = std::string(line) + '\n';
    if (::write(writing_.get(), whole.data(), whole.size()) < 0)
        throw std::system_error(errno, std::generic_category(), "write");
}

std::string LinePipe::read() const {
    std::string line;
    pollfd source{.fd = reading_.get(), .events = POLLIN, .revents = 0};
    char c = 0;
    while (::poll(&source, 1, 10'000) == 1 && ::read(source.fd, &c, 1) == 1) {
        if (c == '\n') return line;
        line += c;
    }
    return "nothing";
}

}  // namespace bildkurier
