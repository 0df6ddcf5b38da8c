// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ModelCommand.h"

#include "ImportSummary.h"

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
    if (isImporting() && shownProgress_ != model_->progress()) {
        shownProgress_ = model_->progress();
        report_.progress(shownProgress_);
    }
    if (isImporting() && shownSpeed_ != model_->speed()) {
        shownSpeed_ = model_->speed();
        report_.speed(shownSpeed_);
    }
    lookLater();
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
    if (isImporting() && isFirst) return model_->cancelImport();
    if (isImporting()) {
        const ImportRunner::Progress& progress = model_->progress();
        report_.log(importSummary(progress, model_->speed().average, true));
        report_.finished(progress, true);
    }
    end();
}

void ModelCommand::stop(ExitStatus status, const std::string& message) {
    if (ended_) return;
    report_.error(message);
    status_ = status;
    end();
}

void ModelCommand::end() {
    if (std::exchange(ended_, true)) return;
    observation_.reset();
    done_(status_);
}

}  // namespace bildkurier
