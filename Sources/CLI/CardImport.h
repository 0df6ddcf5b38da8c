// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CameraBrowserDelegate.h"
#include "CameraDelegate.h"
#include "CommandLine.h"
#include "ExitStatus.h"
#include "FileStore.h"
#include "Guard.h"
#include "ImportRunner.h"
#include "ImportSelection.h"
#include "MainQueue.h"
#include "Report.h"
#include "SpeedMeter.h"

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace bildkurier {

/// Carries out one command: finds the cameras it is about, and plans and imports one after
/// the other. Main thread.
class CardImport final : public CameraBrowserDelegate,
                         public CameraDelegate,
                         public std::enable_shared_from_this<CardImport> {
public:
    using Done = std::function<void(ExitStatus)>;

    /// `done` is called once. `main` and `report` must outlive this.
    CardImport(CommandLine commandLine, std::shared_ptr<FileStore> fileStore, MainQueue& main,
               Background& background, Report& report, Done done);

    /// Every camera that is attached has been reported: the command can begin.
    void begin();

    /// The user wants to stop: the first time after the file in flight, then at once.
    void interrupt();

    /// Whether an import was given up half-way, so that its staging folder is still there.
    bool abandonedImport() const { return abandonedImport_; }

    void cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) override;
    void cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) override;
    void cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) override;
    void cameraCatalogReady(Camera& camera) override;
    void cameraCatalogChanged(Camera& camera) override;

private:
    struct Destination;

    bool wants(const Camera& camera) const;
    void importAll();
    void nextCamera();
    void dropCamera();
    void planned(CameraFiles catalogue, const Destination& destination);
    void startImport(const Report::Plan& plan, CameraFiles files);
    void sampleSpeed();
    void importFinished(const ImportRunner::Progress& progress, bool cancelled);
    void stop(ExitStatus status, const std::string& message);
    void end();

    CommandLine commandLine_;
    std::shared_ptr<FileStore> fileStore_;
    MainQueue& main_;
    Background& background_;
    Report& report_;
    Done done_;

    std::vector<std::shared_ptr<Camera>> cameras_;
    std::deque<std::shared_ptr<Camera>> waiting_;
    std::shared_ptr<Camera> camera_;
    Guard scans_;
    ImportRunner runner_;
    SpeedMeter speedMeter_;
    Handle speedTimer_;
    ExitStatus status_ = ExitStatus::success;
    bool abandonedImport_ = false;
    bool ended_ = false;
};

}  // namespace bildkurier
