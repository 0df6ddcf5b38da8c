// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ExitStatus.h"
#include "Report.h"

#include <memory>

namespace bildkurier {

/// For programs as `json`, else for people.
std::unique_ptr<Report> makeReport(bool json);

/// Builds what the command needs, carries it out, and cleans up behind it.
ExitStatus runProgram(const CommandLine& commandLine);

}  // namespace bildkurier
