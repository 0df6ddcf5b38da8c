// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WindowScript.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>
#include <chrono>
#include <optional>
#include <utility>

namespace bildkurier {

namespace {

QString windowText(const std::string& text) { return QString::fromStdString(text); }

std::optional<std::string> present(const QString& text) {
    if (text.isEmpty()) return std::nullopt;
    return text.toStdString();
}

std::optional<Error> complaint(const QString& why) {
    if (why.isEmpty()) return std::nullopt;
    return Error{why.toStdString()};
}

/// Noon of a day like "2024-05-09".
Date noon(const QString& day) {
    const QDateTime time(QDate::fromString(day, Qt::ISODate), QTime(12, 0));
    return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

}  // namespace

void WindowScript::begin() {
    store_->folders.insert({"/bilder", "/fotos"});
    store_->isNetwork = onNetwork_;
    access_->granted = granted_;
    keyring_->key = present(publicKey_);
    keyring_->fingerprint = present(fingerprint_);
    keyring_->isPublicHalfReadable = publicKeyReadable_;
    settings_->storedUser = "quarzfeld";
    settings_->storedHost = serverName_.toStdString();
    settings_->storedPath = "/fotos";
    if (startsWithServer_) settings_->storedKind = DestinationKind::sftp;
    import_ = std::make_shared<ImportModel>(
        ImportModel::Collaborators{.browser = nullptr,
                                   .fileStore = server_,
                                   .settings = settings_,
                                   .folderPicker = picker_,
                                   .runner = std::make_unique<ImportRunner>(server_, loop_, loop_),
                                   .autoImport = std::make_shared<AutoImport>(settings_, server_),
                                   .sleepBlocker = std::make_shared<FakeSleepBlocker>(),
                                   .folderAccess = access_,
                                   .runLock = std::make_shared<FakeRunLock>(),
                                   .keyring = keyring_,
                                   .workspace = workspace_,
                                   .homeFolder = "/home/anna"},
        loop_, loop_);
    model_ = std::make_unique<ImportBridge>(import_);
    keys_ = std::make_unique<KeyBridge>(std::make_shared<SSHKeyModel>(
        SSHKeyModel::Collaborators{.keyring = keyring_,
                                   .picker = picker_,
                                   .fileAccess = std::make_shared<FakeFileAccess>(),
                                   .homeFolder = "/home/anna"},
        keyRequired_, loop_, loop_));
    QQmlEngine::setObjectOwnership(model_.get(), QQmlEngine::CppOwnership);
    QQmlEngine::setObjectOwnership(keys_.get(), QQmlEngine::CppOwnership);
    emit begun();
}

// Cameras

int WindowScript::camera(const QString& name, const QString& identity) {
    const auto number = static_cast<int>(cameras_.size());
    auto& made = *cameras_.emplace_back(std::make_shared<FakeCamera>(std::to_string(number)));
    made.deviceName = present(name);
    made.deviceIdentity = present(identity);
    return number;
}

void WindowScript::file(int camera, const QString& name, double size, const QString& day) {
    const auto made = std::make_shared<FakeCameraFile>(store_, name.toStdString(), "");
    made->cameraSize = static_cast<std::int64_t>(size);
    made->holdsBack = true;
    if (!day.isEmpty()) made->shot = noon(day);
    at(camera).catalogue.push_back(made);
}

void WindowScript::keepIdentityOpen(int camera) { at(camera).identityIsFinal = false; }

void WindowScript::plugIn(int camera) {
    import_->cameraBrowserDidAdd(cameras_.at(static_cast<std::size_t>(camera)));
}

void WindowScript::unplug(int camera) {
    import_->cameraBrowserDidRemove(cameras_.at(static_cast<std::size_t>(camera)));
    loop_.settle();
}

void WindowScript::openSession(int camera) { at(camera).sessionOpened(); }

void WindowScript::refuseSession(int camera, const QString& why) {
    at(camera).sessionOpened(complaint(why));
}

void WindowScript::readCard(int camera) { at(camera).catalogReady(); }

void WindowScript::connectCamera(int camera) {
    plugIn(camera);
    openSession(camera);
    readCard(camera);
    settle();
}

FakeCameraFile& WindowScript::fileOf(int camera, int file) const {
    return static_cast<FakeCameraFile&>(*at(camera).catalogue.at(static_cast<std::size_t>(file)));
}

// Time

void WindowScript::startImport() {
    import_->startImport();
    loop_.settle();
}

void WindowScript::grow(int camera, int file, int bytes) {
    auto& grown = fileOf(camera, file);
    grown.contents.resize(static_cast<std::size_t>(grown.cameraSize));
    grown.grow(static_cast<std::size_t>(bytes));
}

void WindowScript::send(int camera, int file) const {
    auto& delivered = fileOf(camera, file);
    delivered.contents.resize(static_cast<std::size_t>(delivered.cameraSize));
    delivered.deliver();
}

void WindowScript::deliver(int camera, int file) {
    send(camera, file);
    loop_.settle();
}

void WindowScript::deliverLast(int camera, int file) {
    send(camera, file);
    while (model_->importing() && (loop_.stepMain() || loop_.stepBackground())) {
    }
}

void WindowScript::settle() { loop_.settle(); }

void WindowScript::advance(int milliseconds) {
    loop_.advance(std::chrono::milliseconds(milliseconds));
}

void WindowScript::scaleClock(double factor) {
    import_->clock = [this, factor] {
        return factor * std::chrono::duration<double>(loop_.clock.time_since_epoch()).count();
    };
}

// The rest of the world

void WindowScript::choose(const QString& path) {
    picker_->choice = path.isEmpty() ? std::nullopt : std::optional(Url::file(path.toStdString()));
}

void WindowScript::showServerKey(const QString& fingerprint) {
    server_->hostKey = fingerprint.toStdString();
}

void WindowScript::refuseServer(const QString& why) { server_->refusal = present(why); }

void WindowScript::failKeys(const QString& why) { keyring_->error = complaint(why); }

void WindowScript::log(const QString& line) { import_->addLog(line.toStdString()); }

void WindowScript::log(const QStringList& lines) {
    for (const auto& line : lines) log(line);
}

QStringList WindowScript::shownFolders() const {
    QStringList shown;
    for (const auto& folder : workspace_->opened) shown.append(windowText(folder.path));
    return shown;
}

QString WindowScript::clipboard() { return QGuiApplication::clipboard()->text(); }

void WindowScript::setClipboard(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

bool WindowScript::isDark() {
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

void WindowScript::setDark(bool dark) {
    QGuiApplication::setPalette(
        QPalette(dark ? QColor(0x1e, 0x1e, 0x20) : QColor(0xf2, 0xf2, 0xf5)));
}

QString WindowScript::stored(const QString& key) const {
    const auto yesOrNo = [](bool yes) {
        return yes ? QStringLiteral("ja") : QStringLiteral("nein");
    };
    if (key == "byDate") return yesOrNo(settings_->storedByDate);
    if (key == "byType") return yesOrNo(settings_->storedByType);
    if (key == "useFromDate") return yesOrNo(settings_->storedUseFromDate);
    if (key == "autoImportEnabled") return yesOrNo(settings_->storedAutoImport);
    if (key == "dest") return windowText(settings_->storedDestination.path);
    if (key == "fromDay") return windowText(settings_->storedFromDay.value_or(""));
    if (key == "sftpUser") return windowText(settings_->storedUser);
    if (key == "sftpHost") return windowText(settings_->storedHost);
    if (key == "sftpPath") return windowText(settings_->storedPath);
    qFatal("no such setting: %s", qPrintable(key));
}

SpeedGauge WindowScript::gauge(double current, double average, double peak) const {
    return SpeedGauge({.current = current, .average = average, .peak = peak});
}

TypeTile WindowScript::tile(const QString& extension) const {
    return TypeTile({.ext = extension.toStdString(), .count = 2, .bytes = 1'000'000});
}

}  // namespace bildkurier
