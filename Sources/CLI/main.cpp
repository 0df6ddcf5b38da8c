// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CommandLine.h"
#include "OutputReader.h"
#include "ProcessStart.h"
#include "Program.h"

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <span>

namespace {

/// The status unless something that was printed did not arrive, though somebody reads it.
int withOutputWritten(bildkurier::ExitStatus status) {
    using bildkurier::ExitStatus;
    const bool isWritten = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (!isWritten && status == ExitStatus::success && !bildkurier::outputReaderIsGone()) {
        std::fputs("Die Ausgabe ließ sich nicht vollständig schreiben.\n", stderr);
        status = ExitStatus::filesFailed;
    }
    return static_cast<int>(status);
}

/// Says what the call came to without being carried out.
bildkurier::ExitStatus answered(const bildkurier::CommandLineAnswer& answer) {
    using namespace bildkurier;
    if (answer.status == ExitStatus::success) {
        std::fprintf(stdout, "%s\n", answer.text.c_str());
    } else {
        makeReport(answer.json)->error(answer.text);
    }
    return answer.status;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace bildkurier;
    prepareProcess();
    const auto commandLine = parseCommandLine(std::span(argv, static_cast<std::size_t>(argc)));
    if (!commandLine) return withOutputWritten(answered(commandLine.error()));
    try {
        return withOutputWritten(runProgram(*commandLine));
    } catch (const std::exception& error) {
        makeReport(commandLine->json)
            ->error(fmt::format("Bildkurier kann nicht weiterarbeiten: {}", error.what()));
        return static_cast<int>(ExitStatus::filesFailed);
    }
}
