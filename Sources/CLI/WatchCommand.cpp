// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WatchCommand.h"

#include "CameraChoice.h"
#include "CameraName.h"
#include "CardFolder.h"
#include "FileName.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

WatchCommand::WatchCommand(CommandLine commandLine, std::shared_ptr<const SettingsStore> settings,
                           std::shared_ptr<ImportModel> model, MainQueue& main, Report& report,
                           Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      commandLine_(std::move(commandLine)),
      settings_(std::move(settings)) {}

void WatchCommand::start() {
    if (const auto found = lookForFolders(); !found)
        return stop(ExitStatus::noCamera, found.error().message);
    if (!commandLine_.trust && !model().trustsCamera()) {
        return stop(ExitStatus::noCamera,
                    "Noch ist keine Kamera vertraut: bitte mit --trust eine nennen.");
    }
    tellOfMissingCamera();
    showStatus();
}

Result<> WatchCommand::lookForFolders() {
    for (const auto& card : commandLine_.cards) {
        std::error_code error;
        if (std::filesystem::exists(card, error) || error) {
            if (auto readable = checkCardFolder(card); !readable) return readable;
        } else {
            report().status(
                fmt::format("Der Ordner „{}“ ist noch nicht da; er wird eingelesen, sobald er es "
                            "ist.",
                            displayText(card)));
        }
    }
    return {};
}

void WatchCommand::tellOfMissingCamera() {
    const auto isMeant = [this](const auto& camera) {
        return camera->isIdentityFinal() && answersTo(*camera, *commandLine_.trust);
    };
    if (!commandLine_.trust || std::ranges::any_of(model().cameras(), isMeant)) return;
    if (const auto unknown = unknownIdentity(model().cameras())) return report().status(*unknown);
    report().status(
        fmt::format("Eine Kamera „{}“ ist nicht verbunden; ihr wird vertraut, sobald sie es ist.",
                    displayText(*commandLine_.trust)));
}

void WatchCommand::tellOfSuspension() {
    const bool isSuspended = model().status().starts_with(ImportModel::suspendedStatus);
    if (std::exchange(suspended_, isSuspended) || !isSuspended) return;
    report().status(
        "Wenn das behoben ist: Kamera neu verbinden, oder bildkurier-cli watch neu starten.");
}

void WatchCommand::look() {
    if (!toldLoss_ && settings_->lostChanges()) {
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
