// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportBridge.h"

#include "CameraName.h"
#include "FileName.h"
#include "Formatting.h"
#include "WindowText.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace bildkurier {

namespace {

using Phase = ImportModel::Phase;

/// How long changes are collected while files arrive, perhaps hundreds a second.
constexpr std::chrono::milliseconds noticeDelay{100};
/// How long what must be heard is not followed by anything else.
constexpr std::chrono::seconds timeToHear{1};

bool isAboutAFile(const QString& status) { return status.startsWith(QStringLiteral("Lade ")); }

}  // namespace

ImportBridge::ImportBridge(std::shared_ptr<ImportModel> model) : model_(std::move(model)) {
    notice_.setSingleShot(true);
    connect(&notice_, &QTimer::timeout, this, &ImportBridge::tell);
    hearing_.setSingleShot(true);
    connect(&hearing_, &QTimer::timeout, this, &ImportBridge::tell);
    observation_ = model_->observe([this] {
        noteImport();
        announce();
    });
    model_->onLog = [this](const std::string&) { hasNewLines_ = true; };
    tell();
}

ImportBridge::~ImportBridge() {
    model_->onLog = [](const std::string&) {};
}

void ImportBridge::announce() {
    if (notice_.isActive()) return;
    notice_.start(importing() ? noticeDelay : std::chrono::milliseconds::zero());
}

/// At once, for by the time anything is told the status may be another one.
void ImportBridge::noteImport() {
    const bool isImporting = importing();
    if (std::exchange(wasImporting_, isImporting) && model_->phase() == Phase::done)
        mustBeHeard_.append(windowText(model_->log().back()));
    if (!isImporting) {
        hasNotedFirst_ = false;
    } else if (!hasNotedFirst_ && isAboutAFile(status())) {
        hasNotedFirst_ = true;
        mustBeHeard_.append(status());
    }
}

void ImportBridge::tell() {
    if (auto names = cameraNames(); names != shownCameras_) {
        shownCameras_ = std::move(names);
        emit camerasChanged();
    }
    if (model_->newByType() != shownTypes_) {
        shownTypes_ = model_->newByType();
        emit tilesChanged();
    }
    if (const auto count = std::ssize(model_->log()); hasNewLines_ || count != shownLines_) {
        hasNewLines_ = false;
        shownLines_ = count;
        emit logChanged();
    }
    if (model_->speed() != shownSpeed_) {
        shownSpeed_ = model_->speed();
        emit speedChanged();
    }
    tellNews();
    emit changed();
}

void ImportBridge::tellNews() {
    const bool looksAgain = model_->isPostponed() && model_->phase() == Phase::checking;
    if (hearing_.isActive() || looksAgain) return;
    if (!mustBeHeard_.isEmpty()) {
        news_ = mustBeHeard_.takeFirst();
        hearing_.start(timeToHear);
    } else if (!importing() || !isAboutAFile(status())) {
        news_ = status();
    }
}

bool ImportBridge::connected() const { return model_->phase() != Phase::noCamera; }

bool ImportBridge::working() const {
    const auto phase = model_->phase();
    return phase == Phase::connecting || phase == Phase::reading || phase == Phase::checking;
}

bool ImportBridge::importing() const { return model_->phase() == Phase::importing; }

// The camera

QString ImportBridge::cameraTitle() const {
    if (!model_->camera()) return tr("Keine Kamera");
    return windowText(displayName(*model_->camera()));
}

QString ImportBridge::cameraSubtitle() const {
    switch (model_->phase()) {
        case Phase::noCamera:
            return model_->cameras().empty() ? tr("Kamera einschalten und per USB verbinden")
                                             : status();
        case Phase::connecting:
            return tr("Verbinde …");
        case Phase::reading:
            return tr("Lese Speicherkarte …");
        default:
            return QStringList{tr("%1 Dateien").arg(countText(model_->cameraFileCount())),
                               windowText(formatBytes(model_->cameraBytes())),
                               tr("%1 Aufnahmetage").arg(countText(dayCount()))}
                .join(QStringLiteral(" · "));
    }
}

QStringList ImportBridge::cameraNames() const {
    QStringList names;
    for (const auto& camera : model_->cameras()) names.append(windowText(displayName(*camera)));
    return names;
}

int ImportBridge::selectedCamera() const {
    const auto& cameras = model_->cameras();
    const auto found = std::ranges::find_if(
        cameras, [this](const auto& camera) { return camera->id() == model_->selectedID(); });
    return found == cameras.end() ? -1 : static_cast<int>(std::distance(cameras.begin(), found));
}

void ImportBridge::setSelectedCamera(int index) {
    const auto& cameras = model_->cameras();
    if (index < 0 || index >= std::ssize(cameras)) return;
    model_->setSelectedID(cameras[static_cast<std::size_t>(index)]->id());
    announce();
}

// The destination

ImportBridge::Destination ImportBridge::destination() const {
    return model_->destinationKind() == DestinationKind::sftp ? Destination::Server
                                                              : Destination::Folder;
}

void ImportBridge::setDestination(Destination destination) {
    model_->setDestinationKind(destination == Destination::Server ? DestinationKind::sftp
                                                                  : DestinationKind::folder);
    announce();
}

QString ImportBridge::destDescription() const {
    return windowText(displayText(model_->destDescription()));
}

QString ImportBridge::sftpUser() const { return windowText(model_->sftpUser()); }

void ImportBridge::setSftpUser(const QString& user) {
    model_->setSftpUser(user.toStdString());
    announce();
}

QString ImportBridge::sftpHost() const { return windowText(model_->sftpHost()); }

void ImportBridge::setSftpHost(const QString& host) {
    model_->setSftpHost(host.toStdString());
    announce();
}

QString ImportBridge::sftpPath() const { return windowText(model_->sftpPath()); }

void ImportBridge::setSftpPath(const QString& path) {
    model_->setSftpPath(path.toStdString());
    announce();
}

QString ImportBridge::sftpStatus() const { return windowText(model_->sftpStatus()); }

QString ImportBridge::sftpHostKey() const {
    const QString fingerprint = windowText(model_->sftpHostFingerprint());
    if (model_->sftpHostIsNew()) {
        return tr("Erste Verbindung: Server-Schlüssel %1 gespeichert. Mit dem Fingerabdruck auf "
                  "dem Server vergleichen.")
            .arg(fingerprint);
    }
    return fingerprint.isEmpty() ? QString() : tr("Server-Schlüssel: %1").arg(fingerprint);
}

void ImportBridge::setByDate(bool byDate) {
    model_->setByDate(byDate);
    announce();
}

void ImportBridge::setByType(bool byType) {
    model_->setByType(byType);
    announce();
}

// Automatic import

void ImportBridge::setAutoImportEnabled(bool enabled) {
    model_->setAutoImportEnabled(enabled);
    announce();
}

bool ImportBridge::mayChangeAutoImport() const {
    if (importing()) return false;
    if (autoImportEnabled()) return true;
    const auto& camera = model_->camera();
    return camera && camera->identity() && camera->isIdentityFinal();
}

QString ImportBridge::autoImportCaption() const {
    if (!autoImportEnabled()) {
        return tr(
            "Kamera zuerst verbinden und Zielordner wählen. Der automatische Modus ist nur "
            "für diese Kamera gültig.");
    }
    return tr("Freigegeben für %1. Beim nächsten Verbinden beginnt der Import ab dem ersten "
              "fehlenden Aufnahmetag. Vorhandene Dateien bleiben unangetastet.")
        .arg(windowText(displayText(model_->trustedName())));
}

// Days

void ImportBridge::setUseFromDate(bool useFromDate) {
    model_->setUseFromDate(useFromDate);
    announce();
}

void ImportBridge::setFromDayIndex(double index) {
    model_->setFromDayIndex(index);
    announce();
}

int ImportBridge::dayCount() const { return static_cast<int>(model_->cameraDays().size()); }

QString ImportBridge::fromDay() const {
    const auto day = model_->fromDaySelected();
    return day ? tr("ab %1").arg(windowText(displayDayLong().text(*day))) : QString();
}

// What is new

ImportBridge::Summary ImportBridge::summary() const {
    if (!connected()) return Summary::NoCamera;
    if (working()) return Summary::Working;
    if (destNeedsChoice()) return Summary::NeedsChoice;
    if (model_->cameraFileCount() == 0) return Summary::NoFiles;
    return model_->newFiles().empty() ? Summary::NothingNew : Summary::NewFiles;
}

QString ImportBridge::newCount() const {
    const auto count = std::ssize(model_->newFiles());
    return count == 1 ? tr("1 Datei") : tr("%1 Dateien").arg(countText(count));
}

QString ImportBridge::newSize() const { return windowText(formatBytes(model_->newBytes())); }

QList<TypeTile> ImportBridge::tiles() const {
    QList<TypeTile> tiles;
    for (const auto& summary : shownTypes_) tiles.append(TypeTile(summary));
    return tiles;
}

// The log

QString ImportBridge::logTitle() const {
    if (shownLines_ == 0) return tr("Protokoll");
    return tr("Protokoll (%1)").arg(countText(shownLines_));
}

QStringList ImportBridge::log() const {
    QStringList lines;
    for (const auto& line : model_->log()) lines.append(windowText(line));
    return lines;
}

// The import

QString ImportBridge::status() const { return windowText(model_->status()); }

QString ImportBridge::progressCounts() const {
    return tr("%1 von %2")
        .arg(countText(model_->progress().done), countText(model_->progress().total));
}

QString ImportBridge::importTitle() const {
    const auto count = std::ssize(model_->newFiles());
    return count > 0 ? tr("%1 importieren").arg(countText(count)) : tr("Importieren");
}

bool ImportBridge::mayImport() const {
    return model_->phase() == Phase::ready && !model_->newFiles().empty() &&
           !model_->objectionToDestination();
}

void ImportBridge::reload() { model_->reload(); }

void ImportBridge::startImport() {
    if (mayImport()) model_->startImport();
}

void ImportBridge::cancelImport() { model_->cancelImport(); }

void ImportBridge::chooseDest() { model_->chooseDest(); }

void ImportBridge::showDestInFinder() { model_->showDestInFinder(); }

void ImportBridge::applySFTPDestination() { model_->applySFTPDestination(); }

void ImportBridge::forgetSFTPHostKey() { model_->forgetSFTPHostKey(); }

}  // namespace bildkurier
