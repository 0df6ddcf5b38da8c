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
    const auto& fingerprint = model().sftpHostFingerprint();
    const bool isNew = model().sftpHostIsNew();
    const bool isConnected = model().sftpConnected();
    if (isConnected) report().status(status);
    if (fingerprint && isNew) reportNewServer(*fingerprint);
    if (!isConnected) return stop(ExitStatus::destinationUnusable, status);
    if (fingerprint && !isNew) report().status(fmt::format("Server-Schlüssel: {}", *fingerprint));
    end();
}

}  // namespace bildkurier
