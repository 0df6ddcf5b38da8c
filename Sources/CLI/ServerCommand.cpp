// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerCommand.h"

#include "SftpUrl.h"

#include <fmt/format.h>

#include <utility>

namespace bildkurier {

ServerCommand::ServerCommand(CommandLine::Command command, ServerAddress server,
                             std::shared_ptr<ImportModel> model,
                             std::shared_ptr<SSHKeyring> keyring, MainQueue& main, Report& report,
                             Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      command_(command),
      server_(std::move(server)),
      keyring_(std::move(keyring)) {}

void ServerCommand::start() {
    model().setSftpUser(server_.user);
    model().setSftpHost(server_.host);
    model().setSftpPath(server_.path);
    if (command_ == CommandLine::Command::sftpCheck) return model().applySFTPDestination();
    forget();
}

void ServerCommand::forget() {
    model().forgetSFTPHostKey();
    if (knowsServer()) {
        return stop(ExitStatus::destinationUnusable,
                    "Der Server-Schlüssel lässt sich nicht vergessen.");
    }
    report().status(model().sftpStatus().value_or(""));
    end();
}

bool ServerCommand::knowsServer() const {
    const Url server = sftpURL(server_.user, server_.host, server_.path);
    return keyring_->hostFingerprint(server.host, server.port).has_value();
}

void ServerCommand::look() {
    if (command_ != CommandLine::Command::sftpCheck || model().sftpChecking()) return;
    const std::string status = model().sftpStatus().value_or("");
    const auto& fingerprint = model().sftpHostFingerprint();
    const bool isNew = model().sftpHostIsNew();
    const bool isConnected = model().sftpConnected();
    if (isConnected) report().status(status);
    if (fingerprint && isNew) report().newServer(*fingerprint);
    if (!isConnected) return stop(ExitStatus::destinationUnusable, status);
    if (fingerprint && !isNew) report().status(fmt::format("Server-Schlüssel: {}", *fingerprint));
    end();
}

}  // namespace bildkurier
