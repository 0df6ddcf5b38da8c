// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ModelCommand.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// `watch`: stays, tells what shows, and lets the model import the trusted camera whenever it
/// is connected.
class WatchCommand final : public ModelCommand {
public:
    /// `trust`: name or identity of a camera that the model will trust as soon as it is connected.
    /// `lostChoice` tells whether that, or another choice, could not be stored.
    WatchCommand(std::optional<std::string> trust, std::function<bool()> lostChoice,
                 std::shared_ptr<ImportModel> model, MainQueue& main, Report& report, Done done);

private:
    void start() override;
    void look() override;
    bool isUnderWay() const override { return running_ || isImporting(); }
    /// The user of a window would see at once that it is not in the list.
    void tellOfMissingCamera();
    void tellOfSuspension();

    std::optional<std::string> trust_;
    std::function<bool()> lostChoice_;
    bool toldLoss_ = false;
    bool running_ = false;
    bool suspended_ = false;
};

}  // namespace bildkurier
