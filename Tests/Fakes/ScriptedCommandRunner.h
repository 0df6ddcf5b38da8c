// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandRunner.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Runs nothing: answers what the test says and remembers what it was asked. One thread.
class ScriptedCommandRunner final : public CommandRunner {
public:
    struct Call {
        std::string program;
        std::vector<std::string> arguments;
        std::optional<std::string> input;

        bool operator==(const Call&) const = default;
    };

    std::vector<Call> calls;
    std::function<CommandResult(const Call&)> answer = [](const Call&) {
        return CommandResult{.status = 0, .output = ""};
    };

    CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::optional<std::string>& input) override {
        calls.push_back({program, arguments, input});
        return answer(calls.back());
    }
};

}  // namespace bildkurier
