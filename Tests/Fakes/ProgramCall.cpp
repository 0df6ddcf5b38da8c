// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramCall.h"

#include "RunningProgram.h"

#include <utility>

namespace bildkurier {

ProgramResult ProgramCall::run() const { return RunningProgram(*this).finish(); }

bool succeeds(std::vector<std::string> command) {
    return ProgramCall{.path = "/usr/bin/env", .arguments = std::move(command)}.run().exitStatus ==
           0;
}

}  // namespace bildkurier
