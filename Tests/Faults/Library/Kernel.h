// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace bildkurier::faults {

/// What this library itself wants of the system, past every interposed function. Leaves errno
/// in any state.
struct Kernel {
    /// Where the descriptor `descriptor` leads; length of the path written into `path`, or 0.
    static std::size_t descriptorPath(int descriptor, char* path, std::size_t room);
    /// The same for the working folder.
    static std::size_t workingFolder(char* path, std::size_t room);

    /// A file to append to, made if need be; negative on failure.
    static int openLog(const char* path);
    static void append(int log, std::string_view text);

    static void raise(int signal);
    /// Stops the process, here, until it is told to go on.
    static void stop();
    /// Whether a signal that all threads block has not been taken yet.
    static bool isPending(int signal);
    static void sleepAMillisecond();
};

}  // namespace bildkurier::faults
