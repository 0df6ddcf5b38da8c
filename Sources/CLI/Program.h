// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ExitStatus.h"

namespace bildkurier {

/// Builds what the command needs, carries it out, and cleans up behind it.
ExitStatus runProgram(const CommandLine& commandLine);

}  // namespace bildkurier
