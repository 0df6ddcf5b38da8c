// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ModelCommand.h"
#include "ServerAddress.h"

namespace bildkurier {

/// `sftp check` and `sftp forget`: what the two buttons of the destination's form do.
class ServerCommand final : public ModelCommand {
public:
    ServerCommand(CommandLine::Command command, ServerAddress server,
                  std::shared_ptr<ImportModel> model, MainQueue& main, Report& report, Done done);

private:
    void start() override;
    void look() override;

    CommandLine::Command command_;
    ServerAddress server_;
};

}  // namespace bildkurier
