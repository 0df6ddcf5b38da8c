// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WatchCommand.h"

#include "CameraChoice.h"
#include "CameraName.h"
#include "FileName.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace bildkurier {

WatchCommand::WatchCommand(std::optional<std::string> trust, std::function<bool()> lostChoice,
                           std::shared_ptr<ImportModel> model, MainQueue& main, Report& report,
                           Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      trust_(std::move(trust)),
      lostChoice_(std::move(lostChoice)) {}

void WatchCommand::start() {
    if (!trust_ && !model().trustsCamera()) {
        return stop(ExitStatus::noCamera,
                    "Noch ist keine Kamera vertraut: bitte mit --trust eine nennen.");
    }
    tellOfMissingCamera();
    showStatus();
}

void WatchCommand::tellOfMissingCamera() {
    const auto isMeant = [this](const auto& camera) {
        return camera->isIdentityFinal() && answersTo(*camera, *trust_);
    };
    if (!trust_ || std::ranges::any_of(model().cameras(), isMeant)) return;
    if (const auto unknown = unknownIdentity(model().cameras())) return report().status(*unknown);
    report().status(
        fmt::format("Eine Kamera „{}“ ist nicht verbunden; ihr wird vertraut, sobald sie es ist.",
                    displayText(*trust_)));
}

void WatchCommand::tellOfSuspension() {
    const bool isSuspended = model().status().starts_with(ImportModel::suspendedStatus);
    if (std::exchange(suspended_, isSuspended) || !isSuspended) return;
    report().status(
        "Wenn das behoben ist: Kamera neu verbinden, oder bildkurier-cli watch neu starten.");
}

void WatchCommand::look() {
    if (!toldLoss_ && lostChoice_()) {
        toldLoss_ = true;
        report().error(settingNotKept);
    }
    const bool wasRunning = std::exchange(running_, isImporting());
    if (running_ && !wasRunning) announceImport(planned());
    if (running_) return;
    if (wasRunning) report().finished(model().progress(), isInterrupted());
    if (isInterrupted()) return end();
    showStatus();
    tellOfSuspension();
}

}  // namespace bildkurier
