// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProcessCommandRunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// Runs the sftp client with a server program of its own on this computer, whoever it is to
/// connect to. Tests skip where `isInstalled` is false.
class ConnectionlessRunner final : public CommandRunner {
public:
    static constexpr auto usualServer = "/usr/lib/openssh/sftp-server";

    static bool isInstalled() { return std::filesystem::exists(usualServer); }

    explicit ConnectionlessRunner(std::string server = usualServer) : server_(std::move(server)) {}

    CommandResult run(const std::string& program, const std::vector<std::string>& /*arguments*/,
                      const std::optional<std::string>& input) override {
        return ProcessCommandRunner().run(program, {"-b", "-", "-D", server_}, input);
    }

private:
    std::string server_;
};

}  // namespace bildkurier
