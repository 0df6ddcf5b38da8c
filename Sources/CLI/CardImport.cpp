// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardImport.h"

#include "ByteSum.h"
#include "CardFolder.h"
#include "RunThen.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace bildkurier {

namespace {

constexpr Duration samplingInterval{0.25};
constexpr auto namelessCamera = "Kamera";

}  // namespace

struct CardImport::Destination {
    bool usable = true;  ///< a folder that serves the command, or nothing yet
    FileKeys existing;
};

CardImport::CardImport(CommandLine commandLine, std::shared_ptr<FileStore> fileStore,
                       MainQueue& main, Background& background, Report& report, Done done)
    : commandLine_(std::move(commandLine)),
      fileStore_(std::move(fileStore)),
      main_(main),
      background_(background),
      report_(report),
      done_(std::move(done)),
      runner_(fileStore_, main, background) {
    runner_.onLog = [this](const std::string& line) { report_.log(line); };
    runner_.onProgress = [this](const ImportRunner::Progress& progress) {
        report_.progress(progress);
    };
    runner_.onFinish = [this](const ImportRunner::Progress& progress, bool cancelled) {
        importFinished(progress, cancelled);
    };
}

void CardImport::begin() {
    if (ended_) return;
    const bool listing = commandLine_.command == CommandLine::Command::cameras;
    if (listing) report_.cameras(cameras_);
    if (cameras_.size() < commandLine_.cards.size()) {
        return stop(ExitStatus::noCamera, "Nicht jede angegebene Karte ist ein lesbarer Ordner.");
    }
    if (cameras_.empty()) return stop(ExitStatus::noCamera, "Keine Kamera gefunden.");
    return listing ? end() : importAll();
}

void CardImport::importAll() {
    std::ranges::copy_if(cameras_, std::back_inserter(waiting_),
                         [this](const auto& camera) { return wants(*camera); });
    if (waiting_.empty()) {
        return stop(ExitStatus::noCamera,
                    fmt::format("Kamera „{}“ nicht gefunden.", commandLine_.camera.value_or("")));
    }
    if (waiting_.size() > 1 && commandLine_.cards.empty()) {
        return stop(ExitStatus::noCamera,
                    "Mehrere Kameras gefunden; bitte mit --camera eine wählen.");
    }
    const bool overlapping = std::ranges::any_of(cameras_, [this](const auto& camera) {
        const auto folder = cardFolder(*camera);
        return folder && overlaps(*folder, commandLine_.destination);
    });
    if (overlapping) {
        return stop(ExitStatus::destinationUnusable,
                    "Karte und Zielordner liegen ineinander; bitte einen anderen Zielordner "
                    "wählen.");
    }
    nextCamera();
}

void CardImport::interrupt() {
    if (ended_) return;
    const bool isFirst = status_ != ExitStatus::interrupted;
    status_ = ExitStatus::interrupted;
    if (runner_.isRunning() && isFirst) return runner_.cancel();
    if (runner_.isRunning()) {
        abandonedImport_ = true;
        report_.finished(runner_.progress(), speedMeter_.reading.average, true);
        runner_.abandon();
    }
    end();
}

void CardImport::cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) {
    cameras_.push_back(camera);
}

void CardImport::cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) {
    std::erase(cameras_, camera);
    // A run that is under way fails file by file, each with its line in the log.
    if (camera == camera_ && !runner_.isRunning()) {
        stop(ExitStatus::noCamera, "Die Kamera wurde getrennt.");
    }
}

void CardImport::cameraDidOpenSession(Camera& /*camera*/, const std::optional<Error>& error) {
    if (error) {
        stop(ExitStatus::noCamera, fmt::format("Verbindung fehlgeschlagen: {}", error->message));
    }
}

void CardImport::cameraCatalogReady(Camera& camera) {
    CameraFiles catalogue = sortedByShotDate(camera.files());
    runThen(
        background_, main_,
        [store = fileStore_, folder = Url::file(commandLine_.destination),
         command = commandLine_.command] {
            // A plan only reads.
            const bool usable =
                command == CommandLine::Command::plan
                    ? !store->fileSize(folder)
                    : !store->fileExists(folder) || store->isWritableDirectory(folder);
            return Destination{.usable = usable, .existing = store->existingFileKeys(folder)};
        },
        scans_([this, catalogue = std::move(catalogue)](const Destination& destination) {
            planned(catalogue, destination);
        }));
}

void CardImport::cameraCatalogChanged(Camera& /*camera*/) {}

bool CardImport::wants(const Camera& camera) const {
    const auto& wish = commandLine_.camera;
    return !wish || camera.name().value_or(namelessCamera) == wish || camera.identity() == wish;
}

void CardImport::nextCamera() {
    dropCamera();
    if (waiting_.empty()) return end();
    camera_ = std::move(waiting_.front());
    waiting_.pop_front();
    camera_->setDelegate(weak_from_this());
    camera_->openSession();
}

void CardImport::dropCamera() {
    scans_.renew();
    if (!camera_) return;
    camera_->closeSession();
    camera_->setDelegate({});
    camera_.reset();
}

void CardImport::planned(CameraFiles catalogue, const Destination& destination) {
    if (!destination.usable) {
        return stop(ExitStatus::destinationUnusable,
                    commandLine_.command == CommandLine::Command::plan
                        ? "Der Zielordner ist kein Ordner."
                        : "Zielordner ist nicht beschreibbar.");
    }
    ImportSelection missing = missingFiles(catalogue, destination.existing, commandLine_.since);
    const Report::Plan plan{.cameraFiles = std::ssize(catalogue),
                            .files = std::ssize(missing.files),
                            .bytes = missing.bytes,
                            .types = summarizeByType(missing.files)};
    if (commandLine_.command == CommandLine::Command::plan) {
        report_.plan(plan);
        return nextCamera();
    }
    startImport(plan, std::move(missing.files));
}

void CardImport::startImport(const Report::Plan& plan, CameraFiles files) {
    report_.importing(plan);
    if (files.empty()) {
        report_.finished({}, 0, false);
        return nextCamera();
    }
    const auto started =
        runner_.start(std::move(files), Url::file(commandLine_.destination), commandLine_.layout);
    if (!started) {
        return stop(ExitStatus::destinationUnusable,
                    fmt::format("Kann Zielordner nicht beschreiben: {}", started.error().message));
    }
    speedMeter_ = {};
    sampleSpeed();
    speedTimer_ = main_.every(samplingInterval, [this] { sampleSpeed(); });
}

void CardImport::sampleSpeed() {
    const ImportRunner::Progress& progress = runner_.progress();
    speedMeter_.sample(byteSum(progress.bytesDone, progress.currentBytes),
                       main_.now().time_since_epoch().count());
    report_.speed(speedMeter_.reading);
}

void CardImport::importFinished(const ImportRunner::Progress& progress, bool cancelled) {
    sampleSpeed();
    speedTimer_.reset();
    report_.finished(progress, speedMeter_.reading.average, cancelled);
    if (cancelled) return end();
    if (progress.failed > 0) status_ = ExitStatus::filesFailed;
    nextCamera();
}

void CardImport::stop(ExitStatus status, const std::string& message) {
    if (ended_) return;
    report_.error(message);
    status_ = status;
    end();
}

void CardImport::end() {
    if (std::exchange(ended_, true)) return;
    speedTimer_.reset();
    dropCamera();
    done_(status_);
}

}  // namespace bildkurier
