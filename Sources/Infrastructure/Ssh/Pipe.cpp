// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace bildkurier {
namespace {

/// Moves `end` there; answers 0 or an errno value.
int moveAboveStandardStreams(FileDescriptor& end) {
    if (end.get() > STDERR_FILENO) return 0;
    FileDescriptor moved(::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved) return errno;
    end = std::move(moved);
    return 0;
}

}  // namespace

std::expected<Pipe, int> Pipe::make() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(errno);
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    for (auto* end : {&pipe.reading, &pipe.writing})
        if (const int error = moveAboveStandardStreams(*end)) return std::unexpected(error);
    return pipe;
}

}  // namespace bildkurier
