// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WatchCommand.h"

#include <utility>

namespace bildkurier {

WatchCommand::WatchCommand(bool trusting, std::function<bool()> lostChoice,
                           std::shared_ptr<ImportModel> model, MainQueue& main, Report& report,
                           Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      trusting_(trusting),
      lostChoice_(std::move(lostChoice)) {}

void WatchCommand::start() {
    if (!trusting_ && !model().trustsCamera()) {
        return stop(ExitStatus::noCamera,
                    "Noch ist keine Kamera vertraut: bitte mit --trust eine nennen.");
    }
    showStatus();
}

void WatchCommand::look() {
    if (!toldLoss_ && lostChoice_()) {
        toldLoss_ = true;
        report().error("Die Einstellung lässt sich nicht speichern.");
    }
    const bool wasRunning = std::exchange(running_, isImporting());
    if (running_ && !wasRunning) announceImport(planned());
    if (running_) return;
    if (wasRunning) report().finished(model().progress(), isInterrupted());
    if (isInterrupted()) return end();
    showStatus();
}

}  // namespace bildkurier
