// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "VerifyCommand.h"

#include "CameraChoice.h"
#include "DestinationFolder.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

VerifyCommand::VerifyCommand(CommandLine commandLine, Url destination,
                             std::shared_ptr<CardProof> proof,
                             std::shared_ptr<FolderAccess> folderAccess,
                             std::shared_ptr<FileStore> fileStore, MainQueue& main, Report& report,
                             Done done)
    : commandLine_(std::move(commandLine)),
      destination_(std::move(destination)),
      proof_(std::move(proof)),
      folderAccess_(std::move(folderAccess)),
      fileStore_(std::move(fileStore)),
      main_(main),
      report_(report),
      done_(std::move(done)) {
    tellOf(*proof_, report_);
    proof_->onFinish =
        alive_([this](const Result<CardProof::Outcome>& outcome) { proved(outcome); });
}

void VerifyCommand::begin() {
    if (ended_) return;
    auto chosen = chooseCameras(commandLine_, cameras_);
    if (!chosen) return stop(ExitStatus::noCamera, chosen.error().message);
    const auto usable = destination_.isFile()
                            ? checkDestinationFolder(destination_, *fileStore_, *folderAccess_)
                            : Result<>();
    if (!usable) return stop(ExitStatus::destinationUnusable, usable.error().message);
    waiting_ = *std::move(chosen);
    severalCameras_ = waiting_.size() > 1;
    nextCamera();
}

void VerifyCommand::nextCamera() {
    if (camera_) camera_->closeSession();
    camera_.reset();
    if (waiting_.empty()) return end();
    camera_ = std::move(waiting_.front());
    waiting_.pop_front();
    isListed_ = false;
    spoiled_.reset();
    if (severalCameras_) report_.cameras({&camera_, 1});
    if (std::ranges::find(cameras_, camera_) == cameras_.end())
        return passOver(ExitStatus::noCamera, lostCamera);
    camera_->setDelegate(weak_from_this());
    camera_->openSession();
}

void VerifyCommand::passOver(ExitStatus status, const std::string& message) {
    if (waiting_.empty()) return stop(status, message);
    report_.error(message);
    noteStatus(status);
    main_.post(alive_([this, passed = std::exchange(camera_, nullptr)] {
        passed->closeSession();
        if (!ended_) nextCamera();
    }));
}

void VerifyCommand::cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) {
    cameras_.push_back(camera);
}

void VerifyCommand::cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) {
    std::erase(cameras_, camera);
    if (ended_ || camera != camera_) return;
    if (!isListed_) return passOver(ExitStatus::noCamera, lostCamera);
    if (proof_->isRunning()) spoil(lostCamera);
}

void VerifyCommand::cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) {
    if (ended_ || isListed_ || &camera != camera_.get() || !error) return;
    passOver(ExitStatus::noCamera, "Verbindung fehlgeschlagen: " + error->message);
}

void VerifyCommand::cameraCatalogGrows(Camera& /*camera*/, std::size_t /*filesSoFar*/) {}

void VerifyCommand::cameraCatalogReady(Camera& camera) {
    if (ended_ || &camera != camera_.get()) return;
    if (isListed_) return cameraCatalogChanged(camera);
    isListed_ = true;
    proof_->start({.files = sortedByShotDate(camera.files()),
                   .overlaps = camera.overlapTest(),
                   .hasSameFiles = camera.sameFilesTest(),
                   .destination = destination_,
                   .content = commandLine_.content,
                   .others = camera.otherFiles()});
}

void VerifyCommand::cameraCatalogChanged(Camera& camera) {
    if (ended_ || &camera != camera_.get() || !proof_->isRunning()) return;
    spoil("Auf der Karte hat sich während der Prüfung etwas geändert; bitte noch einmal prüfen.");
}

void VerifyCommand::spoil(const std::string& reason) {
    if (waiting_.empty()) return stop(ExitStatus::filesFailed, reason);
    if (!spoiled_) spoiled_ = reason;
}

void VerifyCommand::proved(const Result<CardProof::Outcome>& outcome) {
    if (spoiled_) return passOver(ExitStatus::filesFailed, *spoiled_);
    if (!outcome) return passOver(ExitStatus::destinationUnusable, outcome.error().message);
    tellOf(*outcome, report_);
    if (!outcome->isComplete()) noteStatus(ExitStatus::filesFailed);
    main_.post(alive_([this] {
        if (!ended_) nextCamera();
    }));
}

void VerifyCommand::interrupt() {
    status_ = ExitStatus::interrupted;
    end();
}

void VerifyCommand::stop(ExitStatus status, const std::string& message) {
    if (ended_) return;
    report_.error(message);
    noteStatus(status);
    end();
}

void VerifyCommand::end() {
    if (std::exchange(ended_, true)) return;
    proof_->cancel();
    done_(status_);
}

}  // namespace bildkurier
