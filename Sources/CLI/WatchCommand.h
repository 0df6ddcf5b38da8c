// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ModelCommand.h"

#include <functional>

namespace bildkurier {

/// `watch`: stays, tells what shows, and lets the model import the trusted camera whenever it
/// is connected.
class WatchCommand final : public ModelCommand {
public:
    /// `trusting`: a camera will be trusted as soon as it is connected. `lostChoice` tells whether
    /// that, or another choice, could not be stored.
    WatchCommand(bool trusting, std::function<bool()> lostChoice,
                 std::shared_ptr<ImportModel> model, MainQueue& main, Report& report, Done done);

private:
    void start() override;
    void look() override;

    bool trusting_;
    std::function<bool()> lostChoice_;
    bool toldLoss_ = false;
    bool running_ = false;
};

}  // namespace bildkurier
