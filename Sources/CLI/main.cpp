// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CommandLine.h"
#include "Program.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <span>

int main(int argc, char** argv) {
    using namespace bildkurier;
    // A reader that goes away must not take the import with it.
    std::signal(SIGPIPE, SIG_IGN);
    const auto commandLine = parseCommandLine(std::span(argv, static_cast<std::size_t>(argc)));
    if (!commandLine) {
        const auto& [status, text] = commandLine.error();
        std::fputs(text.c_str(), status == ExitStatus::success ? stdout : stderr);
        return static_cast<int>(status);
    }
    try {
        return static_cast<int>(runProgram(*commandLine));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Bildkurier kann nicht weiterarbeiten: %s\n", error.what());
        return static_cast<int>(ExitStatus::filesFailed);
    }
}
