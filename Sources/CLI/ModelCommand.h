// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ExitStatus.h"
#include "Guard.h"
#include "Handle.h"
#include "ImportModel.h"
#include "MainQueue.h"
#include "Report.h"

#include <functional>
#include <memory>
#include <string>

namespace bildkurier {

/// A command that works the model as a user at the window would: it looks at what shows, and
/// chooses. Main thread.
class ModelCommand {
public:
    using Done = std::function<void(ExitStatus)>;

    ModelCommand(const ModelCommand&) = delete;
    ModelCommand& operator=(const ModelCommand&) = delete;
    virtual ~ModelCommand() = default;

    /// The cameras attached at the start have been reported: the command can begin.
    void begin();

    /// The user wants to stop: the first time after the file in flight, then at once.
    void interrupt();

protected:
    /// `done` is called once. `main` and `report` must outlive this.
    ModelCommand(std::shared_ptr<ImportModel> model, MainQueue& main, Report& report, Done done);

    virtual void start() = 0;

    /// The model shows something else. Not called from within the model, nor after the end.
    virtual void look() = 0;

    /// Whether an import has begun whose end has not been told.
    virtual bool isUnderWay() const { return isImporting(); }

    ImportModel& model() const { return *model_; }
    Report& report() const { return report_; }
    bool isImporting() const { return model_->phase() == ImportModel::Phase::importing; }
    bool isInterrupted() const { return status_ == ExitStatus::interrupted; }

    /// An import begins, or goes on: its progress is told from now on until it ends.
    void announceImport(const Report::Plan& plan);
    /// All that the model would import now.
    Report::Plan planned() const;
    /// Tells what the model says, unless it was told already.
    void showStatus();

    /// Looks as soon as the model has come to rest.
    void lookLater();
    /// Without effect once the user has interrupted the command.
    void setStatus(ExitStatus status) {
        if (!isInterrupted()) status_ = status;
    }
    /// Tells the summary of an import that the model does not sum up itself.
    void sumUp(const ImportRunner::Progress& progress);
    /// Sums up an import that is under way, as one that ends now.
    void concludeImport();
    /// Both sum up an import that is under way, for it ends with the command.
    void stop(ExitStatus status, const std::string& message);
    void end();

private:
    void modelChanged();
    void showProgress();
    void leave();

    std::shared_ptr<ImportModel> model_;
    MainQueue& main_;
    Report& report_;
    Done done_;
    ExitStatus status_ = ExitStatus::success;
    bool ended_ = false;
    bool willLook_ = false;
    bool isAnnounced_ = false;
    bool wasImporting_ = false;
    std::string shownStatus_;
    ImportRunner::Progress shownProgress_;
    SpeedMeter::Reading shownSpeed_;
    Handle observation_;
    Guard alive_;
};

}  // namespace bildkurier
