// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraBrowserDelegate.h"
#include "CameraDelegate.h"
#include "CardProof.h"
#include "CommandLine.h"
#include "ExitStatus.h"
#include "FileStore.h"
#include "FolderAccess.h"
#include "ProofReport.h"
#include "Report.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

/// `verify`: proves that the files of the cameras that are meant, one after the other, are at the
/// destination: one that cannot be read does not keep the next. Ends with the worst that it met.
/// Main thread.
class VerifyCommand final : public CameraBrowserDelegate,
                            public CameraDelegate,
                            public std::enable_shared_from_this<VerifyCommand> {
public:
    using Done = std::function<void(ExitStatus)>;

    /// `done` is called once. `report` must outlive this.
    VerifyCommand(CommandLine commandLine, Url destination, std::shared_ptr<CardProof> proof,
                  std::shared_ptr<FolderAccess> folderAccess, std::shared_ptr<FileStore> fileStore,
                  MainQueue& main, Report& report, Done done);

    /// The cameras attached at the start have been reported: the command can begin.
    void begin();

    /// Stops at once.
    void interrupt();

    void cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) override;
    void cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) override;
    void cameraBrowserDidIdentify(const std::shared_ptr<Camera>& /*camera*/) override {}
    void cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) override;
    void cameraCatalogGrows(Camera& camera, std::size_t filesSoFar) override;
    void cameraCatalogReady(Camera& camera) override;
    void cameraCatalogChanged(Camera& camera) override;

private:
    void nextCamera();
    /// Leaves this camera, of which nothing is proved, for the next one; ends where there is none.
    void passOver(ExitStatus status, const std::string& message);
    /// What the running proof finds does not count. Where others wait it is left to come to its
    /// end, for only then can the next one begin.
    void spoil(const std::string& reason);
    /// Statuses of what goes wrong are the worse the higher they are.
    void noteStatus(ExitStatus status) { status_ = std::max(status_, status); }
    void proved(const Result<CardProof::Outcome>& outcome);
    void stop(ExitStatus status, const std::string& message);
    void end();

    CommandLine commandLine_;
    Url destination_;
    std::shared_ptr<CardProof> proof_;
    std::shared_ptr<FolderAccess> folderAccess_;
    std::shared_ptr<FileStore> fileStore_;
    MainQueue& main_;
    Report& report_;
    Done done_;
    std::vector<std::shared_ptr<Camera>> cameras_;
    std::deque<std::shared_ptr<Camera>> waiting_;
    std::shared_ptr<Camera> camera_;      ///< whose session is held
    bool isListed_ = false;               ///< its catalogue has been read
    std::optional<std::string> spoiled_;  ///< why what is found does not count
    bool severalCameras_ = false;
    bool ended_ = false;
    ExitStatus status_ = ExitStatus::success;
    Guard alive_;
};

}  // namespace bildkurier
