// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandLine.h"
#include "ModelCommand.h"
#include "Result.h"
#include "SettingsStore.h"

#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// `watch`: stays, tells what shows, and lets the model import the trusted camera whenever it
/// is connected.
class WatchCommand final : public ModelCommand {
public:
    /// The model trusts the camera that the user names as soon as that is connected. `settings`
    /// are the user's own.
    WatchCommand(CommandLine commandLine, std::shared_ptr<const SettingsStore> settings,
                 std::shared_ptr<ImportModel> model, MainQueue& main, Report& report, Done done);

private:
    void start() override;
    void look() override;
    bool isUnderWay() const override { return running_ || isImporting(); }
    /// Tells of each folder given that is not there yet. Fails where one is no folder, or not to
    /// be read.
    Result<> lookForFolders();
    /// The user of a window would see at once that it is not in the list.
    void tellOfMissingCamera();
    void tellOfSuspension();

    CommandLine commandLine_;
    std::shared_ptr<const SettingsStore> settings_;
    bool toldLoss_ = false;
    bool running_ = false;
    bool suspended_ = false;
};

}  // namespace bildkurier
