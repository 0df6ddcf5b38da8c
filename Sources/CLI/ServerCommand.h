// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ModelCommand.h"
#include "SSHKeyring.h"
#include "ServerAddress.h"

#include <memory>

namespace bildkurier {

/// `sftp check` and `sftp forget`: what the two buttons of the destination's form do.
class ServerCommand final : public ModelCommand {
public:
    ServerCommand(CommandLine::Command command, ServerAddress server,
                  std::shared_ptr<ImportModel> model, std::shared_ptr<SSHKeyring> keyring,
                  MainQueue& main, Report& report, Done done);

private:
    void start() override;
    void look() override;
    void forget();
    bool knowsServer() const;

    CommandLine::Command command_;
    ServerAddress server_;
    std::shared_ptr<SSHKeyring> keyring_;
};

}  // namespace bildkurier
