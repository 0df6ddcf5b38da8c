// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProcessCommandRunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Runs the sftp client with a server program of its own on this computer, whoever it is to
/// connect to. Tests skip where `isInstalled` is false.
class ConnectionlessRunner final : public CommandRunner {
public:
    static bool isInstalled() { return std::filesystem::exists(server); }

    CommandResult run(const std::string& program, const std::vector<std::string>& /*arguments*/,
                      const std::optional<std::string>& input) override {
        return ProcessCommandRunner().run(program, {"-b", "-", "-D", server}, input);
    }

private:
    static constexpr auto server = "/usr/lib/openssh/sftp-server";
};

}  // namespace bildkurier
