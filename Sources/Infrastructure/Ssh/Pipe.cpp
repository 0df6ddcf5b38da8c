// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace bildkurier {
namespace {

FileDescriptor aboveStandardStreams(FileDescriptor end) {
    if (end.get() > STDERR_FILENO) return end;
    return FileDescriptor(::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

std::expected<Pipe, int> Pipe::make() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(errno);
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    pipe.reading = aboveStandardStreams(std::move(pipe.reading));
    pipe.writing = aboveStandardStreams(std::move(pipe.writing));
    if (!pipe.reading || !pipe.writing) return std::unexpected(errno);
    return pipe;
}

}  // namespace bildkurier
