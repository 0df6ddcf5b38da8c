// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportModel.h"

#include "ByteSum.h"
#include "CameraName.h"
#include "FatalError.h"
#include "FileName.h"
#include "Formatting.h"
#include "ImportSummary.h"
#include "LocalDay.h"
#include "RunThen.h"
#include "ServerVisit.h"
#include "SftpUrl.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace bildkurier {

namespace {

constexpr Duration reloadDelay{1.5};
constexpr Duration reopenDelay{1.0};
constexpr Duration samplingInterval{0.25};
constexpr Duration retryInterval{5.0};
/// Each look at a server is a login, which one that refuses it may take amiss.
constexpr Duration serverRetryInterval{60.0};
constexpr double speedWindow = 2.0;  // seconds
constexpr std::size_t longestLog = 500;
constexpr int mostFruitlessResumes = 2;
constexpr auto checkingStatus = "Prüfe Zielordner …";
constexpr auto windingUpStatus =
    "Warte auf die Datei, die beim Abbruch des Imports noch unterwegs war …";
constexpr auto sleepReason = "Bildkurier läuft";
constexpr auto gaveUp =
    "Import gestoppt: Die Kamera trennt sich wiederholt, ohne dass etwas ankommt. Originalkabel "
    "direkt am Mac probieren (ohne Hub) und Akku der Kamera prüfen.";

std::int64_t wholeIndex(double index) {
    constexpr double limit = 0x1p63;
    const bool fits = index >= -limit && index < limit;  // which no NaN does
    if (!fits) fatalError("the day's index is no whole number");
    return static_cast<std::int64_t>(index);
}

std::int64_t totalSize(const std::vector<ImportCandidate>& files) {
    std::int64_t total = 0;
    for (const auto& file : files) total = byteSum(total, file.size);
    return total;
}

/// The bytes of a run so far, the file in flight included.
std::int64_t transferred(const ImportRunner::Progress& progress) {
    const auto [done, current] = std::pair(progress.bytesDone, progress.currentBytes);
    if (done > 0 && current > std::numeric_limits<std::int64_t>::max() - done) {
        fatalError("more bytes transferred than can be counted");
    }
    return done + current;
}

/// The path with "~" for the home folder where it lies in there.
std::string withTilde(const std::string& path, const std::string& home) {
    const bool isInside = !home.empty() && path.starts_with(home) &&
                          (path.size() == home.size() || path[home.size()] == '/');
    return isInside ? "~" + path.substr(home.size()) : path;
}

/// The keys on the camera of those files whose other keys are in the destination.
FileKeys arrivedKeys(const std::map<std::string, std::string>& savedKeys,
                     const FileKeys& existing) {
    FileKeys arrived;
    for (const auto& [key, savedKey] : savedKeys)
        if (existing.contains(savedKey)) arrived.insert(key);
    return arrived;
}

/// Makes sure that files can be put there.
Result<> prepareFolder(FileStore& store, const Url& folder) {
    if (const auto created = store.createDirectory(folder); !created) return created;
    if (!store.isWritableDirectory(folder)) return failure("Zielordner ist nicht beschreibbar.");
    return {};
}

}  // namespace

struct ImportModel::DestinationScan {
    bool onNetwork = false;
    bool writable = false;
    bool overlaps = false;
    std::optional<std::int64_t> capacity;
    std::optional<std::string> trouble;  ///< why more may be there than was listed
    ImportPlanner planner;
    std::optional<ImportPlanner> resumePlanner;
};

struct ImportModel::SFTPCheck {
    Url server;
    std::string host;  ///< as typed
    ServerVisit visit = {};
};

template <class T>
void ImportModel::publish(T& field, std::type_identity_t<T> value) {
    if (field == value) return;
    field = std::move(value);
    observers_.notify();
}

ImportModel::ImportModel(Collaborators collaborators, MainQueue& main, Background& background)
    : clock([&main] { return main.now().time_since_epoch().count(); }),
      main_(main),
      background_(background),
      browser_(std::move(collaborators.browser)),
      fileStore_(std::move(collaborators.fileStore)),
      settings_(std::move(collaborators.settings)),
      folderPicker_(std::move(collaborators.folderPicker)),
      runner_(std::move(collaborators.runner)),
      autoImport_(std::move(collaborators.autoImport)),
      sleepBlocker_(std::move(collaborators.sleepBlocker)),
      folderAccess_(std::move(collaborators.folderAccess)),
      runLock_(std::move(collaborators.runLock)),
      keyring_(std::move(collaborators.keyring)),
      workspace_(std::move(collaborators.workspace)),
      homeFolder_(std::move(collaborators.homeFolder)) {
    speedMeter_.window = speedWindow;
    // A grant that was restored wins over a path stored at another time.
    if (const auto granted = folderAccess_->restore()) settings_->setDestination(*granted);
    destinationKind_ = settings_->destinationKind();
    sftpUser_ = settings_->sftpUser();
    sftpHost_ = settings_->sftpHost();
    sftpPath_ = settings_->sftpPath();
    dest_ = settingsDestination(destinationKind_);
    byDate_ = settings_->byDate();
    byType_ = settings_->byType();
    useFromDate_ = settings_->useFromDate();
    autoImportEnabled_ = settings_->autoImportEnabled();

    runner_->onLog = [this](const std::string& line) { addLog(line); };
    runner_->onProgress = [this](const ImportRunner::Progress& p) { showProgress(p); };
    runner_->onFinish = [this](const ImportRunner::Progress& p, bool cancelled) {
        importFinished(p, cancelled);
    };
    runner_->onRenamed = [this](const ImportRunner::RenamedFile& file) { fileRenamed(file); };
    runner_->onSettled = [this](const auto& arrived) { runSettled(arrived); };
}

Handle ImportModel::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

Url ImportModel::settingsDestination(DestinationKind kind) const {
    if (kind == DestinationKind::folder) return settings_->destination();
    return sftpURL(settings_->sftpUser(), settings_->sftpHost(), settings_->sftpPath());
}

std::string ImportModel::timeStamp() const { return logTime().text(main_.date()); }

std::optional<Date> ImportModel::fromDaySelected() const {
    const std::int64_t index = wholeIndex(fromDayIndex_);
    if (cameraDays_.empty()) return std::nullopt;
    const auto last = std::ssize(cameraDays_) - 1;
    return cameraDays_[static_cast<std::size_t>(std::clamp<std::int64_t>(index, 0, last))];
}

bool ImportModel::destNeedsChoice() const {
    return dest_.isFile() && !folderAccess_->isGranted(dest_);
}

std::string ImportModel::destDescription() const {
    return displayText(destIsSFTP() ? fmt::format("{}@{}{}", dest_.user, dest_.host, dest_.path)
                                    : withTilde(dest_.path, homeFolder_));
}

double ImportModel::totalBytesProgress() const {
    if (newBytes_ < 1) return 0;
    return static_cast<double>(transferred(progress_)) / static_cast<double>(newBytes_);
}

// Choices

void ImportModel::setSelectedID(std::optional<std::string> id) {
    if (selectedID_ != id) select(std::move(id));
}

void ImportModel::select(std::optional<std::string> id) {
    publish(selectedID_, std::move(id));
    selectCamera();
}

void ImportModel::setDest(const Url& dest) {
    publish(dest_, dest);
    if (dest.isFile()) settings_->setDestination(dest);
    recompute();
}

void ImportModel::setDestinationKind(DestinationKind kind) {
    if (destinationKind_ == kind) return;
    publish(destinationKind_, kind);
    settings_->setDestinationKind(kind);
    setDest(settingsDestination(kind));
}

void ImportModel::setSftpUser(std::string user) { publish(sftpUser_, std::move(user)); }

void ImportModel::setSftpHost(std::string host) { publish(sftpHost_, std::move(host)); }

void ImportModel::setSftpPath(std::string path) { publish(sftpPath_, std::move(path)); }

void ImportModel::setByDate(bool byDate) {
    publish(byDate_, byDate);
    settings_->setByDate(byDate);
}

void ImportModel::setByType(bool byType) {
    publish(byType_, byType);
    settings_->setByType(byType);
}

void ImportModel::setUseFromDate(bool useFromDate) {
    publish(useFromDate_, useFromDate);
    settings_->setUseFromDate(useFromDate);
    applyFilter();
}

void ImportModel::setFromDayIndex(double index) {
    if (chooseFromDay(index)) applyFilter();
}

bool ImportModel::chooseFromDay(double index) {
    const bool sameDay = wholeIndex(index) == wholeIndex(fromDayIndex_);
    publish(fromDayIndex_, index);
    if (sameDay) return false;
    if (const auto day = fromDaySelected()) settings_->setFromDay(dayFormatter().text(*day));
    return true;
}

void ImportModel::setAutoImportEnabled(bool enabled) {
    publish(autoImportEnabled_, enabled);
    if (enabled) {
        if (camera_ && autoImport_->enable(*camera_)) {
            return publish(status_, fmt::format("Auto-Import für {} aktiviert. Er startet beim "
                                                "nächsten Verbinden.",
                                                autoImport_->trustedName()));
        }
        return setAutoImportEnabled(false);
    }
    settings_->setAutoImportEnabled(false);
    autoImport_->clearPending();
    if (canResume() || !isPostponed()) return;
    // Nothing begins by itself any more.
    pendingRetry_.reset();
    applyFilter();
}

void ImportModel::trustWhenConnected(std::string nameOrIdentity) {
    expectedTrust_ = std::move(nameOrIdentity);
}

void ImportModel::chooseDest() {
    if (!folderPicker_) return;
    const auto chosen =
        folderPicker_->chooseFolder(dest_.isFile() ? dest_ : settings_->destination());
    if (!chosen) return;
    folderAccess_->remember(*chosen);
    if (*chosen == dest_) return recompute();
    setDest(*chosen);
}

void ImportModel::showDestInFinder() {
    if (workspace_ && dest_.isFile() && !destNeedsChoice()) workspace_->open(dest_);
}

void ImportModel::applySFTPDestination() {
    publish(sftpUser_, withoutBlanks(sftpUser_));
    publish(sftpHost_, withoutBlanks(sftpHost_));
    publish(sftpPath_, withoutBlanks(sftpPath_));
    settings_->setSftpUser(sftpUser_);
    settings_->setSftpHost(sftpHost_);
    settings_->setSftpPath(sftpPath_);
    publish(sftpStatus_, std::nullopt);
    publish(sftpConnected_, false);
    publish(sftpChecking_, true);
    publish(sftpHostFingerprint_, std::nullopt);
    publish(sftpHostIsNew_, false);
    publish(sftpHostKeyMismatch_, false);
    SFTPCheck check{.server = sftpURL(sftpUser_, sftpHost_, sftpPath_), .host = sftpHost_};
    runThen(
        background_, main_,
        [store = fileStore_, keyring = keyring_, check = std::move(check)]() mutable {
            check.visit = ServerVisit::pay(check.server, keyring.get(),
                                           [&] { return prepareFolder(*store, check.server); });
            return check;
        },
        sftpChecks_([this](const SFTPCheck& done) { sftpChecked(done); }));
}

void ImportModel::sftpChecked(const SFTPCheck& check) {
    const auto& [error, fingerprint, isFirst, showsOtherKey] = check.visit;
    publish(sftpChecking_, false);
    publish(sftpHostFingerprint_, fingerprint);
    publish(sftpHostIsNew_, isFirst);
    publish(sftpHostKeyMismatch_, showsOtherKey);
    publish(sftpConnected_, !error);
    if (error) return publish(sftpStatus_, error->message);
    publish(sftpStatus_, fmt::format("Verbunden mit {}.", check.host));
    setDestinationKind(DestinationKind::sftp);
    if (dest_ == check.server) return recompute();
    setDest(check.server);
}

void ImportModel::forgetSFTPHostKey() {
    const Url server = sftpURL(sftpUser_, sftpHost_, sftpPath_);
    if (keyring_) keyring_->forgetHost(server.host, server.port);
    publish(sftpHostKeyMismatch_, false);
    publish(sftpHostFingerprint_, std::nullopt);
    publish(sftpConnected_, false);
    publish(sftpStatus_, "Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“.");
}

void ImportModel::reload() {
    if (destNeedsChoice()) {
        const auto granted = folderAccess_->restore();
        if (granted && folderAccess_->isGranted(*granted)) {
            settings_->setDestination(*granted);
            if (*granted != dest_) setDest(*granted);
        }
    }
    if (!camera_ || phase_ == Phase::importing) return;
    publish(phase_, Phase::connecting);
    publish(status_, "Lese Kamera neu ein …");
    camera_->closeSession();
    pendingReopen_ = main_.after(reopenDelay, [this, camera = std::weak_ptr(camera_)] {
        if (phase_ == Phase::importing) return;
        if (camera_ && camera_ == camera.lock()) camera_->openSession();
    });
}

void ImportModel::addLog(std::string line) {
    onLog(line);
    log_.push_back(std::move(line));
    if (log_.size() > longestLog) log_.pop_front();
    observers_.notify();
}

// Cameras

void ImportModel::cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) {
    cameras_.push_back(camera);
    observers_.notify();
    if (!recognise(camera) && !selectedID_) setSelectedID(camera->id());
}

void ImportModel::cameraBrowserDidIdentify(const std::shared_ptr<Camera>& camera) {
    observers_.notify();
    recognise(camera);
}

bool ImportModel::recognise(const std::shared_ptr<Camera>& camera) {
    if (isAwaited(*camera) && phase_ != Phase::importing) {
        // Before that it may be another one; once it is open, it tells.
        if (camera->isIdentityFinal()) {
            pendingResume_->isBack = true;
            publish(status_, fmt::format("{} wieder verbunden. Import wird fortgesetzt …",
                                         displayName(*camera)));
        }
        takeUp(*camera);
        return true;
    }
    if (expectedTrust_ && camera->isIdentityFinal() && answersTo(*camera, *expectedTrust_))
        trust(*camera);
    if (!autoImport_->cameraConnected(*camera)) return false;
    if (phase_ != Phase::importing) takeUp(*camera);
    return true;
}

void ImportModel::takeUp(const Camera& camera) {
    if (!holds(camera) || phase_ == Phase::noCamera) return select(camera.id());
    if (isReadyOrDone()) recompute();
}

void ImportModel::cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) {
    std::erase(cameras_, camera);
    observers_.notify();
    if (camera != camera_) return;
    autoImport_->clearPending();
    std::optional<std::string> interrupted;
    if (phase_ == Phase::importing) {
        // A file may have been loaded since the last report.
        publish(progress_, runner_->progress());
        interrupted = noteInterruptedImport(*camera);
        runner_->abandon();
        endRun();
    }
    camera_.reset();
    publish(phase_, Phase::noCamera);
    select(cameras_.empty() ? std::nullopt : std::optional(cameras_.front()->id()));
    if (interrupted) publish(status_, *interrupted);
}

void ImportModel::cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) {
    if (!holds(camera) || phase_ == Phase::importing) return;
    if (error) {
        publish(phase_, Phase::noCamera);
        return publish(status_,
                       fmt::format("Verbindung fehlgeschlagen: {}. „Digitale Bilder“, „Fotos“ und "
                                   "Canon-Software schließen, dann Kamera neu verbinden.",
                                   error->message));
    }
    publish(phase_, Phase::reading);
    publish(status_, "Lese Dateiliste der Karte(n) …");
}

void ImportModel::cameraCatalogGrows(Camera& camera, std::size_t filesSoFar) {
    if (!holds(camera) || phase_ != Phase::reading) return;
    publish(status_, fmt::format("Lese Dateiliste der Karte(n) … bisher {} Dateien", filesSoFar));
}

void ImportModel::cameraCatalogReady(Camera& camera) {
    if (holds(camera) && phase_ != Phase::importing) loadCatalog();
}

void ImportModel::cameraCatalogChanged(Camera& camera) {
    if (!holds(camera) || pendingReload_) return;
    changedMeanwhile_ = !isReadyOrDone();
    if (changedMeanwhile_) return;
    pendingReload_ = main_.after(reloadDelay, [this] {
        pendingReload_.reset();
        changedMeanwhile_ = !isReadyOrDone();
        if (camera_ && isReadyOrDone()) loadCatalog();
    });
}

void ImportModel::selectCamera() {
    if (phase_ == Phase::importing) return;
    scanGeneration_.renew();
    pendingReopen_.reset();
    pendingRetry_.reset();
    if (camera_) {
        camera_->closeSession();
        camera_->setDelegate({});
        camera_.reset();
    }
    setCatalog({});
    showMissing({});
    publish(cameraFileCount_, 0);
    publish(cameraBytes_, 0);
    publish(cameraDays_, {});
    const auto found = std::ranges::find_if(
        cameras_, [this](const auto& camera) { return camera->id() == selectedID_; });
    if (found == cameras_.end()) {
        publish(phase_, Phase::noCamera);
        return publish(status_, searchingStatus);
    }
    camera_ = *found;
    camera_->setDelegate(weak_from_this());
    publish(phase_, Phase::connecting);
    publish(status_, fmt::format("Verbinde mit {} …", displayName(*camera_)));
    camera_->openSession();
}

// Catalogue and destination

void ImportModel::setCatalog(CameraFiles files) {
    changedMeanwhile_ = false;
    allFiles_ = sortedByShotDate(std::move(files));
    candidates_ = std::make_shared<const std::vector<ImportCandidate>>(candidates(allFiles_));
    planner_ = {};
    resumePlanner_.reset();
}

void ImportModel::loadCatalog() {
    setCatalog(camera_->files());
    publish(cameraFileCount_, std::ssize(allFiles_));
    publish(cameraBytes_, totalSize(*candidates_));
    setCameraDays();
    const auto stored = settings_->fromDay();
    const auto day = std::ranges::find_if(
        cameraDays_, [&stored](Date start) { return dayFormatter().text(start) == stored; });
    const auto index = day == cameraDays_.end() ? std::ssize(cameraDays_) - 1
                                                : std::ranges::distance(cameraDays_.begin(), day);
    // What is missing is known, and a run may start, only when the destination has been scanned.
    chooseFromDay(static_cast<double>(std::max<std::ptrdiff_t>(index, 0)));
    publish(phase_, Phase::ready);
    recompute();
}

/// The files are in the order of their dates, so each day's stand together. A folder that could
/// not be read is of no day.
void ImportModel::setCameraDays() {
    std::vector<Date> days;
    Date nextDay = Date::min();
    for (std::size_t i = 0; i < candidates_->size(); ++i) {
        const auto& shot = (*candidates_)[i].shotDate;
        if (!shot || *shot < nextDay || allFiles_[i]->obstacle()) continue;
        days.push_back(startOfLocalDay(*shot));
        nextDay = startOfNextLocalDay(*shot);
    }
    publish(cameraDays_, std::move(days));
}

void ImportModel::recompute() {
    const bool isRead = isReadyOrDone() || (phase_ == Phase::checking && !allFiles_.empty());
    if (!camera_ || !isRead) return;
    scanGeneration_.renew();
    if (destNeedsChoice() || destNeedsServer()) {
        planner_ = ImportPlanner(*candidates_, {});
        resumePlanner_.reset();
        destWritable_ = false;
        destOverlaps_ = false;
        destTrouble_.reset();
        destCapacity_.reset();
        publish(destOnNetwork_, false);
        publish(phase_, Phase::ready);
        applyFilter();
        if (destNeedsChoice()) publish(status_, chooseFolderStatus);
        return;
    }
    publish(phase_, Phase::checking);
    scanAtRest();
}

void ImportModel::scanAtRest() {
    const auto goOn = [this](const Url& dest) {
        if (phase_ != Phase::checking) return;
        scanWaits_ = runner_->isWindingUp(dest);
        if (scanWaits_) return publish(status_, windingUpStatus);
        scanDestination();
    };
    publish(status_, checkingStatus);
    if (runner_->isSettled() || runner_->isWindingUp(dest_)) return goOn(dest_);
    // Another path may lead to the same folder. To ask for it can take long.
    scanWaits_ = false;
    runThen(
        background_, main_, [store = fileStore_, dest = dest_] { return store->resolved(dest); },
        scanGeneration_(goOn));
}

void ImportModel::scanDestination() {
    runThen(
        background_, main_,
        [store = fileStore_, overlaps = camera_->overlapTest(), dest = dest_,
         candidates = candidates_, savedKeys = savedKeysToResume()] {
            DestinationScan scan;
            scan.overlaps = overlaps(dest);
            scan.onNetwork = store->isNetworkVolume(dest);
            scan.writable = store->isWritableDirectory(dest);
            scan.capacity = store->availableCapacity(dest);
            // What lies on the card is not there because it was imported.
            auto [keys, trouble] = scan.overlaps ? FileListing() : store->listing(dest);
            scan.trouble = std::move(trouble);
            scan.planner = ImportPlanner(*candidates, keys);
            if (auto arrived = arrivedKeys(savedKeys, keys); !arrived.empty()) {
                keys.merge(arrived);
                scan.resumePlanner = ImportPlanner(*candidates, keys);
            }
            return scan;
        },
        scanGeneration_([this](DestinationScan scan) { destinationScanned(std::move(scan)); }));
}

ImportModel::SavedKeys ImportModel::savedKeysToResume() const {
    return camera_ && isAwaited(*camera_) && renamed_.destination == dest_ ? renamed_.savedKeys
                                                                           : SavedKeys();
}

void ImportModel::destinationScanned(DestinationScan scan) {
    if (phase_ != Phase::checking) return;
    publish(destOnNetwork_, scan.onNetwork);
    destWritable_ = scan.writable;
    destOverlaps_ = scan.overlaps;
    destCapacity_ = scan.capacity;
    planner_ = std::move(scan.planner);
    resumePlanner_ = std::move(scan.resumePlanner);
    const bool isNews = !isPostponed() || scan.trouble != destTrouble_;
    destTrouble_ = scan.trouble;
    if (scan.trouble && isNews) {
        addLog(fmt::format("✗ {} Zielordner nicht vollständig aufgelistet: {}", timeStamp(),
                           *scan.trouble));
    }
    publish(phase_, Phase::ready);
    applyFilter();
    if (camera_ && changedMeanwhile_) cameraCatalogChanged(*camera_);
}

void ImportModel::applyFilter() {
    if (!isReadyOrDone()) return;
    const auto since = useFromDate_ ? fromDaySelected() : std::nullopt;
    showMissing(missingFilesSince(since));
    publish(phase_, Phase::ready);
    if (allFiles_.empty()) {
        pendingRetry_.reset();
        return publish(status_, "Die Kamera meldet keine Dateien.");
    }
    if (destOverlaps_) {
        publish(status_, overlapStatus);
    } else if (destNeedsServer()) {
        publish(status_, nameServerStatus);
    } else if (newFiles_.empty()) {
        publish(status_, nothingNewStatus);
    } else if (destUnlisted()) {
        publish(status_, isPostponed() ? unlistedWaitStatus : unlistedStatus);
    } else if (since) {
        publish(status_,
                fmt::format("{} neue Dateien ({}) bereit zum Import (ab {})", newFiles_.size(),
                            formatBytes(newBytes_), displayDay().text(*since)));
    } else {
        publish(status_, fmt::format("{} neue Dateien ({}) bereit zum Import.", newFiles_.size(),
                                     formatBytes(newBytes_)));
    }
    if (canResume()) {
        resumeInterruptedImport();
    } else {
        startPendingAutoImport();
    }
}

const char* ImportModel::objectionToDestination() const {
    if (destNeedsChoice()) return chooseFolderStatus;
    if (destOverlaps_) return overlapStatus;
    if (destNeedsServer()) return nameServerStatus;
    return destUnlisted() ? unlistedStatus : nullptr;
}

ImportSelection ImportModel::missingFilesSince(std::optional<Date> since) const {
    const auto& planner = canResume() && resumePlanner_ ? *resumePlanner_ : planner_;
    return selectFiles(allFiles_, *candidates_, planner.missing(since));
}

void ImportModel::showMissing(ImportSelection missing) {
    newByType_ = std::move(missing.byType);
    publish(newFiles_, std::move(missing.files));
    publish(newBytes_, missing.bytes);
}

// Runs

void ImportModel::startImport(bool ignoringDateFilter, bool continuingPreviousRun) {
    if (phase_ != Phase::ready || newFiles_.empty()) return;
    if (const char* objection = objectionToDestination()) return publish(status_, objection);
    if (const auto locked = runLock_->acquire(); !locked)
        return publish(status_, locked.error().message);
    if (!continuingPreviousRun) publish(log_, {});
    runIgnoresDateFilter_ = ignoringDateFilter;
    publish(phase_, Phase::importing);
    const auto started =
        runner_->start(newFiles_, dest_, FolderLayout{.byDate = byDate_, .byType = byType_});
    if (!started) {
        releaseLock();
        publish(phase_, Phase::ready);
        return publish(
            status_, fmt::format("Kann Zielordner nicht beschreiben: {}", started.error().message));
    }
    if (!continuingPreviousRun || renamed_.destination != dest_) renamed_ = {dest_, {}};
    pendingRetry_.reset();
    publish(progress_, runner_->progress());
    sleepBlocker_->begin(sleepReason);
    startSpeedMeter();
}

void ImportModel::cancelImport() {
    pendingResume_.reset();
    pendingRetry_.reset();
    runner_->cancel();
    publish(status_, "Breche nach der aktuellen Datei ab …");
}

void ImportModel::endRun() {
    sleepBlocker_->end();
    speedTimer_.reset();
    releaseLock();
}

void ImportModel::releaseLock() {
    if (runner_->isSettled()) runLock_->release();
}

void ImportModel::runSettled(const std::optional<std::string>& arrived) {
    releaseLock();
    if (arrived) {
        fruitlessResumes_ = 0;
        addLog(*arrived);
    }
    if (phase_ == Phase::checking && scanWaits_) scanAtRest();
}

void ImportModel::fileRenamed(const ImportRunner::RenamedFile& file) {
    // One that arrives late may belong to a run before the last one.
    if (file.destination == renamed_.destination)
        renamed_.savedKeys.insert_or_assign(file.key, file.savedKey);
}

void ImportModel::showProgress(const ImportRunner::Progress& progress) {
    publish(progress_, progress);
    if (progress.currentName.empty()) return;
    publish(status_, fmt::format("Lade {} von {}: {}", progress.done + progress.failed + 1,
                                 progress.total, displayText(progress.currentName)));
}

void ImportModel::importFinished(const ImportRunner::Progress& progress, bool cancelled) {
    endRun();
    publish(progress_, progress);
    sampleSpeed();
    pendingResume_.reset();
    if (progress.done > 0) fruitlessResumes_ = 0;
    const std::string summary = importSummary(progress, speed_.average, cancelled);
    addLog(summary);
    publish(phase_, Phase::done);
    if (const auto waiting = autoImport_->waitingCamera(cameras_, camera_)) {
        return select(waiting->id());
    }
    recompute();
    publish(status_, summary);
}

void ImportModel::startSpeedMeter() {
    speedMeter_ = {.window = speedMeter_.window};
    sampledBytes_ = 0;
    sampleSpeed();
    speedTimer_ = main_.every(samplingInterval, [this] { sampleSpeed(); });
}

void ImportModel::sampleSpeed() {
    // While a file is moved into place, its bytes are not among those in flight any more, and not
    // among the finished ones yet.
    sampledBytes_ = std::max(sampledBytes_, transferred(progress_));
    speedMeter_.sample(sampledBytes_, clock());
    publish(speed_, speedMeter_.reading);
}

// Disconnects

std::optional<std::string> ImportModel::noteInterruptedImport(const Camera& camera) {
    addLog(fmt::format("✗ {} Kamera getrennt, {} von {} geladen.", timeStamp(), progress_.done,
                       progress_.total));
    fruitlessResumes_ = progress_.done < 1 ? fruitlessResumes_ + 1 : 0;
    if (runner_->isCancelled()) return {};
    const auto identity = camera.identity();
    if (identity && fruitlessResumes_ <= mostFruitlessResumes) {
        pendingResume_ = {*identity, runIgnoresDateFilter_};
        return "Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist.";
    }
    pendingResume_.reset();
    addLog(fmt::format("✗ {}", gaveUp));
    return gaveUp;
}

bool ImportModel::isAwaited(const Camera& camera) const {
    return pendingResume_ && camera.isKnownAs(pendingResume_->identity);
}

bool ImportModel::canResume() const {
    return pendingResume_ && pendingResume_->isBack && camera_ && camera_->isIdentityFinal() &&
           isAwaited(*camera_);
}

/// Another one made in its place would hide where the disk appears again.
bool ImportModel::hasLostFolder() const {
    return renamed_.destination == dest_ && dest_.isFile() && !destWritable_ &&
           !objectionToDestination();
}

void ImportModel::resumeInterruptedImport() {
    const auto resume = pendingResume_.value_or(Resume());
    if (resume.ignoresDateFilter) showMissing(missingFilesSince(std::nullopt));
    pendingResume_.reset();
    if (!newFiles_.empty() && destUnlisted()) {
        pendingResume_ = resume;
        return postpone("Fortsetzung", unlistedWaitStatus);
    }
    if (!newFiles_.empty() && hasLostFolder()) {
        pendingResume_ = resume;
        return postpone("Fortsetzung", unwritableStatus);
    }
    const bool mayStart = !newFiles_.empty() && !objectionToDestination();
    if (const auto locked = mayStart ? runLock_->acquire() : Result<>(); !locked) {
        pendingResume_ = resume;
        return postpone("Fortsetzung", locked.error().message);
    }
    pendingRetry_.reset();
    if (newFiles_.empty()) {
        return publish(status_, "Nach der Trennung fehlt nichts mehr im Zielordner.");
    }
    const std::size_t count = newFiles_.size();
    startImport(resume.ignoresDateFilter, true);
    if (phase_ != Phase::importing) return releaseLock();
    addLog(fmt::format("↻ {} Fortsetzung nach Trennung: noch {} Dateien.", timeStamp(), count));
}

// The trusted camera

void ImportModel::startPendingAutoImport() {
    if (!camera_ || !autoImport_->consumePending(*camera_)) return;
    if (destOverlaps_) return suspendAutoImport(overlapStatus);
    if (destNeedsServer()) return suspendAutoImport(nameServerStatus);
    ImportSelection missing = missingFilesSince(std::nullopt);
    if (missing.files.empty()) {
        pendingRetry_.reset();
        return publish(status_,
                       "Auto-Import: alle Dateien dieser Kamera sind bereits im Zielordner.");
    }
    // What a server that cannot be reached now would allow is not known either.
    if (destUnlisted()) return postpone("Auto-Import", unlistedWaitStatus);
    if (!destWritable_) return suspendAutoImport(unwritableStatus);
    if (destCapacity_ && *destCapacity_ < missing.bytes) {
        return suspendAutoImport("zu wenig freier Platz im Zielordner.");
    }
    if (const auto locked = runLock_->acquire(); !locked)
        return postpone("Auto-Import", locked.error().message);
    pendingRetry_.reset();
    std::optional<Date> earliest;
    for (const auto& file : missing.files) {
        const auto shot = file->shotDate();
        if (shot && (!earliest || *shot < *earliest)) earliest = shot;
    }
    const std::string range =
        earliest ? "ab dem ersten fehlenden Aufnahmetag " + dayFormatter().text(*earliest)
                 : "für Dateien ohne Aufnahmedatum";
    const std::size_t count = missing.files.size();
    showMissing(std::move(missing));
    startImport(true, false);
    if (phase_ != Phase::importing) return releaseLock();
    addLog(fmt::format("↻ Auto-Import: {} fehlende Dateien {}, Kamera {}.", count, range,
                       autoImport_->trustedName()));
}

void ImportModel::postpone(const std::string& what, const std::string& reason) {
    publish(status_, reason);
    // A filter that is changed meanwhile tries again.
    if (!pendingRetry_) addLog(fmt::format("↻ {} {} wartet: {}", timeStamp(), what, reason));
    pendingRetry_ =
        main_.every(destUnlisted() ? serverRetryInterval : retryInterval, [this] { retry(); });
}

void ImportModel::retry() {
    if (phase_ != Phase::ready || !runLock_->acquire()) return;
    releaseLock();
    if (!canResume() && !autoImport_->cameraConnected(*camera_)) return pendingRetry_.reset();
    // What the other process has imported need not be loaded again.
    recompute();
}

void ImportModel::trust(const Camera& camera) {
    if (!autoImport_->enable(camera)) {
        return addLog(
            fmt::format("✗ {} Kein Auto-Import: {} hat keine Kennung, an der sie "
                        "wiederzuerkennen wäre.",
                        timeStamp(), displayName(camera)));
    }
    expectedTrust_.reset();
    publish(autoImportEnabled_, true);
}

void ImportModel::suspendAutoImport(const std::string& reason) {
    pendingRetry_.reset();
    const std::string message = suspendedStatus + reason;
    publish(status_, message);
    addLog(fmt::format("✗ {} Ziel: {}", message, displayText(dest_.path)));
}

}  // namespace bildkurier
