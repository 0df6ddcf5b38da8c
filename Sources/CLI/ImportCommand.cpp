// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportCommand.h"

#include "ByteSum.h"
#include "CameraChoice.h"
#include "DestinationFolder.h"
#include "FileName.h"
#include "ProofReport.h"
#include "RunThen.h"
#include "ServerVisit.h"

#include <fmt/format.h>

#include <algorithm>
#include <ranges>
#include <utility>

namespace bildkurier {

namespace {

using Command = CommandLine::Command;
using Phase = ImportModel::Phase;

}  // namespace

ImportCommand::ImportCommand(CommandLine commandLine, std::shared_ptr<ImportModel> model,
                             std::shared_ptr<CardProof> proof,
                             std::shared_ptr<FolderAccess> folderAccess,
                             std::shared_ptr<FileStore> fileStore,
                             std::shared_ptr<SSHKeyring> keyring, std::shared_ptr<RunLock> runLock,
                             MainQueue& main, Background& background, Report& report, Done done)
    : ModelCommand(std::move(model), main, report, std::move(done)),
      commandLine_(std::move(commandLine)),
      proof_(std::move(proof)),
      folderAccess_(std::move(folderAccess)),
      fileStore_(std::move(fileStore)),
      keyring_(std::move(keyring)),
      runLock_(std::move(runLock)),
      main_(main),
      background_(background) {
    if (!commandLine_.verify) return;
    tellOf(*proof_, this->report());
    proof_->onFinish =
        answers_([this](const Result<CardProof::Outcome>& outcome) { proved(outcome); });
}

void ImportCommand::start() {
    const auto& cameras = model().cameras();
    const bool listing = commandLine_.command == Command::cameras;
    if (listing) report().cameras(cameras);
    if (listing) {
        const auto attached = checkAttached(commandLine_, cameras);
        return attached ? end() : stop(ExitStatus::noCamera, attached.error().message);
    }
    auto chosen = chooseCameras(commandLine_, cameras);
    if (!chosen) return stop(ExitStatus::noCamera, chosen.error().message);
    waiting_ = *std::move(chosen);
    severalCameras_ = waiting_.size() > 1;
    // Where it is known that another import runs, not even the destination's folder is made.
    const bool imports = commandLine_.command == Command::import;
    if (const auto locked = imports ? runLock_->acquire() : Result<>(); !locked)
        return stop(ExitStatus::destinationUnusable, locked.error().message);
    const Url& destination = model().dest();
    destination.isFile() ? lookForFolder(destination) : reachServer();
}

void ImportCommand::lookForFolder(const Url& destination) {
    const auto usable = checkDestinationFolder(destination, *fileStore_, *folderAccess_,
                                               "Mit --to würde er neu angelegt.");
    usable ? nextCamera() : stop(ExitStatus::destinationUnusable, usable.error().message);
}

void ImportCommand::reachServer() {
    Url folder = model().dest();
    // A plan leaves nothing behind: the topmost folder is there already.
    if (commandLine_.command == Command::plan) folder.path.assign(1, '/');
    runThen(
        background_, main_,
        [store = fileStore_, keyring = keyring_, folder = std::move(folder)] {
            return ServerVisit::pay(folder, keyring.get(),
                                    [&] { return store->createDirectory(folder); });
        },
        answers_([this](const ServerVisit& visit) {
            if (isInterrupted()) return;
            if (visit.fingerprint && visit.isFirst) report().newServer(*visit.fingerprint);
            if (visit.error) return stop(ExitStatus::destinationUnusable, visit.error->message);
            nextCamera();
        }));
}

void ImportCommand::nextCamera() {
    if (waiting_.empty()) return end();
    camera_ = std::move(waiting_.front());
    waiting_.pop_front();
    stage_ = Stage::reading;
    model().setSelectedID(camera_->id());
    lookLater();
}

void ImportCommand::passOver(ExitStatus status, const std::string& message) {
    if (severalCameras_ && stage_ == Stage::reading) report().cameras({&camera_, 1});
    if (waiting_.empty()) return stop(status, message);
    concludeImport();
    report().error(message);
    setStatus(status);
    stage_ = Stage::beginning;
    toProve_.clear();
    if (model().awaitsCamera()) model().cancelImport();
    nextCamera();
}

void ImportCommand::look() {
    switch (stage_) {
        case Stage::beginning:
            return;
        case Stage::reading:
            return lookWhileReading();
        case Stage::running:
            return lookWhileRunning();
        case Stage::returning:
            return lookForReturn();
        case Stage::proving:
            return lookWhileProving();
    }
}

void ImportCommand::lookWhileProving() {
    // Where others wait the proof comes to its end, for only then can the next one begin; but it
    // does not count.
    if (!isAttached() && waiting_.empty()) stop(ExitStatus::filesFailed, lostCamera);
}

bool ImportCommand::isAttached() const {
    return std::ranges::find(model().cameras(), camera_) != model().cameras().end();
}

void ImportCommand::lookWhileReading() {
    if (!isAttached()) return passOver(ExitStatus::noCamera, lostCamera);
    if (model().phase() == Phase::noCamera) return passOver(ExitStatus::noCamera, model().status());
    if (model().phase() != Phase::ready) return;
    if (model().destOverlaps())
        return passOver(ExitStatus::destinationUnusable, ImportModel::overlapStatus);
    plan_ = chosenPlan();
    if (plan_.files > 0 && model().destUnlisted())
        return passOver(ExitStatus::destinationUnusable, ImportModel::unlistedStatus);
    if (severalCameras_) report().cameras({&camera_, 1});
    if (commandLine_.command == Command::import) return startImport();
    report().plan(plan_);
    nextCamera();
}

bool ImportCommand::chooseDay() {
    if (!commandLine_.since) return true;
    const auto& days = model().cameraDays();
    const auto day = std::ranges::lower_bound(days, *commandLine_.since);
    if (day == days.end()) return false;
    model().setFromDayIndex(static_cast<double>(day - days.begin()));
    return true;
}

Report::Plan ImportCommand::chosenPlan() {
    if (chooseDay()) return planned();
    return {
        .status = model().cameraFileCount() > 0 ? ImportModel::nothingNewStatus : model().status(),
        .cameraFiles = model().cameraFileCount(),
        .types = {}};
}

void ImportCommand::startImport() {
    announceImport(plan_);
    const auto unreadable = tellOfUnreadable();
    if (plan_.files == 0) return finished(unreadable);
    if (unreadable.failed > 0) setStatus(ExitStatus::filesFailed);
    model().startImport();
    if (!isImporting()) return stop(ExitStatus::destinationUnusable, model().status());
    stage_ = Stage::running;
    noteFiles();
}

ImportRunner::Progress ImportCommand::tellOfUnreadable() {
    ImportRunner::Progress unreadable;
    if (!commandLine_.since) return unreadable;
    const auto day = model().fromDaySelected();
    for (const auto& file : model().camera()->files()) {
        const auto obstacle = file->obstacle();
        const bool isLoaded = plan_.files > 0 && file->shotDate() >= day;
        if (!obstacle || isLoaded) continue;
        ++unreadable.total;
        ++unreadable.failed;
        report().log(
            fmt::format("✗ {}: {}", displayText(file->name().value_or("")), obstacle->message));
    }
    return unreadable;
}

void ImportCommand::noteFiles() {
    files_.clear();
    for (const auto& file : model().newFiles()) {
        files_.push_back({fileKey(file->name().value_or(""), file->size()), file->size()});
        if (commandLine_.verify) toProve_.insert(files_.back().key);
    }
}

void ImportCommand::noteLoss() {
    lost_ = model().progress();
    lostFailures_.clear();
    for (const std::size_t position : model().failedFiles())
        lostFailures_.push_back(files_.at(position));
}

void ImportCommand::lookWhileRunning() {
    if (isImporting()) return;
    const auto& progress = model().progress();
    if (!isAttached() && progress.done + progress.failed == progress.total) {
        // Lost when there was nothing left to load.
        if (model().awaitsCamera()) model().cancelImport();
        sumUp(progress);
        return finished(progress);
    }
    if (model().awaitsCamera()) {
        stage_ = Stage::returning;
        noteLoss();
        return showStatus();
    }
    if (isAttached()) return finished(progress);
    if (isInterrupted()) return end();
    passOver(ExitStatus::filesFailed, model().status());
}

void ImportCommand::lookForReturn() {
    if (isImporting()) return goOn();
    showStatus();
    if (model().awaitsCamera()) return lookWhileAwaiting();
    if (!model().camera()) return passOver(ExitStatus::filesFailed, model().status());
    if (!model().newFiles().empty()) return stop(ExitStatus::destinationUnusable, model().status());
    endAfterReturn();
}

void ImportCommand::goOn() {
    takeReturned();
    stage_ = Stage::running;
    plan_ = planned();
    announceImport(plan_);
    tellOfVanished();
    noteFiles();
}

void ImportCommand::takeReturned() {
    const auto& cameras = model().cameras();
    camera_ = *std::ranges::find(cameras, model().selectedID(), &Camera::id);
}

void ImportCommand::lookWhileAwaiting() {
    const auto& cameras = model().cameras();
    const auto selected = std::ranges::find(cameras, model().selectedID(), &Camera::id);
    const auto identity = camera_->identity();
    if (selected == cameras.end() || !identity || !(*selected)->isKnownAs(*identity)) return;
    if (model().phase() == Phase::noCamera) return passOver(ExitStatus::noCamera, model().status());
    const bool isEmpty = model().cameraFileCount() == 0;
    // The day must be chosen before the model knows what is missing, for then the import goes on.
    if (model().phase() == Phase::checking && !isEmpty && !chooseDay()) {
        model().cancelImport();
        plan_.files = 0;
        return endAfterReturn();
    }
    // Any other camera that is ready has files to load, and waits until another process's import
    // has ended, the server's list can be had or the folder is back, for as long as the user lets
    // it.
    if (model().phase() == Phase::ready && isEmpty)
        passOver(ExitStatus::filesFailed, model().status());
}

void ImportCommand::endAfterReturn() {
    takeReturned();
    auto progress = lost_;
    const Vanished vanished = tellOfVanished();
    if (plan_.files == 0) progress.failed += tellOfUnreadable().failed;
    // Of the others, whatever was not heard of any more has arrived all the same.
    progress.done = std::max(progress.done, progress.total - progress.failed - vanished.files);
    progress.bytesDone = plan_.bytes - vanished.bytes;
    sumUp(progress);
    finished(progress);
}

ImportCommand::Vanished ImportCommand::tellOfVanished() {
    FileKeys onCard;
    for (const auto& file : model().camera()->files()) {
        if (file->shotDate() >= commandLine_.since)
            onCard.insert(fileKey(file->name().value_or(""), file->size()));
    }
    const auto isGone = [&](const PlannedFile& file) { return !onCard.contains(file.key); };
    Vanished vanished;
    for (const auto& file : files_ | std::views::drop(lost_.done + lost_.failed)) {
        if (!isGone(file)) continue;
        ++vanished.files;
        vanished.bytes = byteSum(vanished.bytes, file.bytes);
    }
    const auto count = vanished.files + std::ranges::count_if(lostFailures_, isGone);
    if (count == 0) return vanished;
    setStatus(ExitStatus::filesFailed);
    report().log(
        count == 1 ? "✗ 1 Datei ist seit der Trennung nicht mehr auf der Karte und wurde nicht "
                     "geladen."
                   : fmt::format("✗ {} Dateien sind seit der Trennung nicht mehr auf der Karte und "
                                 "wurden nicht geladen.",
                                 count));
    return vanished;
}

bool ImportCommand::isUnderWay() const {
    return stage_ == Stage::running || stage_ == Stage::returning;
}

void ImportCommand::finished(const ImportRunner::Progress& progress) {
    stage_ = Stage::beginning;
    report().finished(progress, isInterrupted());
    if (isInterrupted()) return end();
    if (progress.failed > 0) setStatus(ExitStatus::filesFailed);
    if (!toProve_.empty()) return prove();
    nextCamera();
}

void ImportCommand::prove() {
    if (!isAttached()) return leaveUnproved();
    stage_ = Stage::proving;
    auto files = camera_->files();
    FileKeys gone = toProve_;
    // A twin of a file that was loaded counts as loaded, too.
    std::erase_if(files, [&](const auto& file) {
        const std::string key = fileKey(file->name().value_or(""), file->size());
        gone.erase(key);
        return !toProve_.contains(key);
    });
    toProve_.clear();
    if (!gone.empty()) {
        setStatus(ExitStatus::filesFailed);
        report().log("✗ Nicht alles geprüft: Auf der Karte fehlt, was geladen wurde.");
    }
    if (files.empty()) return nextCamera();
    proof_->start({.files = sortedByShotDate(std::move(files)),
                   .overlaps = camera_->overlapTest(),
                   .destination = model().dest(),
                   .content = true,
                   .isWholeCard = false});
}

void ImportCommand::leaveUnproved() {
    setStatus(ExitStatus::filesFailed);
    report().log(fmt::format("✗ Nicht geprüft: {}", lostCamera));
    nextCamera();
}

void ImportCommand::proved(const Result<CardProof::Outcome>& outcome) {
    if (isInterrupted() || stage_ != Stage::proving) return;
    if (!isAttached()) return leaveUnproved();
    if (!outcome) return stop(ExitStatus::destinationUnusable, outcome.error().message);
    report().verified(*outcome);
    if (!outcome->isComplete()) setStatus(ExitStatus::filesFailed);
    nextCamera();
}

}  // namespace bildkurier
