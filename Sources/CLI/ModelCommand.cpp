// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ModelCommand.h"

#include "ImportSummary.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

namespace bildkurier {

ModelCommand::ModelCommand(std::shared_ptr<ImportModel> model, MainQueue& main, Report& report,
                           Done done)
    : model_(std::move(model)), main_(main), report_(report), done_(std::move(done)) {
    model_->onLog = alive_([this](const std::string& line) { report_.log(line); });
    observation_ = model_->observe([this] { modelChanged(); });
}

void ModelCommand::begin() {
    if (!ended_) start();
}

void ModelCommand::modelChanged() {
    if (ended_) return;
    const bool ends = std::exchange(wasImporting_, isImporting()) && !wasImporting_;
    if (ends) isAnnounced_ = false;
    showProgress();
    lookLater();
}

void ModelCommand::showProgress() {
    if (!isAnnounced_ || !isImporting()) return;
    if (shownProgress_ != model_->progress()) {
        shownProgress_ = model_->progress();
        report_.progress(shownProgress_);
    }
    if (shownSpeed_ != model_->speed()) {
        shownSpeed_ = model_->speed();
        report_.speed(shownSpeed_);
    }
}

void ModelCommand::announceImport(const Report::Plan& plan) {
    report_.importing(plan);
    isAnnounced_ = true;
    showProgress();
}

Report::Plan ModelCommand::planned() const {
    return {.status = model_->status(),
            .cameraFiles = model_->cameraFileCount(),
            .files = std::ssize(model_->newFiles()),
            .bytes = model_->newBytes(),
            .types = model_->newByType()};
}

void ModelCommand::showStatus() {
    if (model_->status() == shownStatus_) return;
    // While an import waits for the destination, it looks there again and again.
    if (model_->isPostponed() && model_->phase() == ImportModel::Phase::checking) return;
    shownStatus_ = model_->status();
    const auto& log = model_->log();
    if (log.empty() || !log.back().contains(shownStatus_)) report_.status(shownStatus_);
}

void ModelCommand::lookLater() {
    if (std::exchange(willLook_, true)) return;
    main_.post(alive_([this] {
        willLook_ = false;
        if (!ended_) look();
    }));
}

void ModelCommand::interrupt() {
    if (ended_) return;
    const bool isFirst = !isInterrupted();
    status_ = ExitStatus::interrupted;
    if (isImporting() && isFirst) {
        model_->cancelImport();
        return showStatus();
    }
    end();
}

void ModelCommand::sumUp(const ImportRunner::Progress& progress) {
    report_.log(importSummary(progress, model_->speed().average, isInterrupted()));
}

void ModelCommand::concludeImport() {
    if (!isUnderWay()) return;
    const ImportRunner::Progress& progress = model_->latestProgress();
    const std::string summary = importSummary(progress, model_->speed().average, false);
    const auto& log = model_->log();
    if (log.empty() || !log.back().starts_with(summary)) sumUp(progress);
    report_.finished(progress, isInterrupted());
}

void ModelCommand::stop(ExitStatus status, const std::string& message) {
    if (ended_) return;
    concludeImport();
    report_.error(message);
    setStatus(status);
    leave();
}

void ModelCommand::end() {
    if (ended_) return;
    concludeImport();
    leave();
}

void ModelCommand::leave() {
    ended_ = true;
    observation_.reset();
    done_(status_);
}

}  // namespace bildkurier
