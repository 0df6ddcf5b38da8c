// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerCommand.h"

#include <fmt/format.h>

#include <utility>

namespace bildkurier {

ServerCommand::ServerCommand(CommandLine::Command command, ServerAddress server,
                             std::shared_ptr<ImportModel> model, MainQueue& main, Report& report,
                             Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      command_(command),
      server_(std::move(server)) {}

void ServerCommand::start() {
    model().setSftpUser(server_.user);
    model().setSftpHost(server_.host);
    model().setSftpPath(server_.path);
    if (command_ == CommandLine::Command::sftpCheck) return model().applySFTPDestination();
    model().forgetSFTPHostKey();
    report().status(model().sftpStatus().value_or(""));
    end();
}

void ServerCommand::look() {
    if (command_ != CommandLine::Command::sftpCheck || model().sftpChecking()) return;
    const std::string status = model().sftpStatus().value_or("");
    if (!model().sftpConnected()) return stop(ExitStatus::destinationUnusable, status);
    report().status(status);
    const std::string fingerprint = model().sftpHostFingerprint().value_or("");
    if (model().sftpHostIsNew()) {
        report().status(
            fmt::format("Erste Verbindung: Server-Schlüssel {} gespeichert. Mit dem "
                        "Fingerabdruck auf dem Server vergleichen.",
                        fingerprint));
    } else if (!fingerprint.empty()) {
        report().status(fmt::format("Server-Schlüssel: {}", fingerprint));
    }
    end();
}

}  // namespace bildkurier
