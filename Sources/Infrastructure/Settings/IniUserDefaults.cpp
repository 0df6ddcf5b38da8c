// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "IniUserDefaults.h"

#include "FileDescriptor.h"
#include "SystemCall.h"
#include "UserFolders.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Keeps the other processes from writing while it lives, where the file system can lock.
FileDescriptor lockedFolder(const fs::path& folder) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    FileDescriptor descriptor(
        retried([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    retried([&] { return ::flock(descriptor.get(), LOCK_EX); });
    return descriptor;
}

/// So that nobody else may read the file, whose rights QSettings keeps.
void makePrivateFile(const std::string& path) {
    const FileDescriptor created(
        retried([&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); }));
}

std::optional<bool> asBoolean(const QVariant& value) {
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    if (value.toString() == "true") return true;
    if (value.toString() == "false") return false;
    return std::nullopt;
}

std::optional<std::string> asText(const QVariant& value) {
    if (value.typeId() == QMetaType::QByteArray) return value.toByteArray().toStdString();
    if (value.typeId() != QMetaType::QString || asBoolean(value)) return std::nullopt;
    return value.toString().toStdString();
}

/// Readable where that gives back the same text.
QVariant variantOf(const std::string& text) {
    const QString readable = QString::fromStdString(text);
    return asText(readable) == text ? QVariant(readable)
                                    : QVariant(QByteArray::fromStdString(text));
}

}  // namespace

IniUserDefaults::IniUserDefaults(std::string path)
    : path_(std::move(path)),
      file_(std::make_unique<QSettings>(QString::fromStdString(path_), QSettings::IniFormat)) {}

IniUserDefaults::~IniUserDefaults() = default;

std::string IniUserDefaults::standardPath() { return configurationFolder() + "/bildkurier.conf"; }

std::optional<std::string> IniUserDefaults::string(const std::string& key) const {
    return asText(stored(key));
}

void IniUserDefaults::setString(const std::string& key, const std::string& text) {
    store(key, variantOf(text));
}

std::optional<bool> IniUserDefaults::boolean(const std::string& key) const {
    return asBoolean(stored(key));
}

void IniUserDefaults::setBoolean(const std::string& key, bool value) {
    store(key, QString(value ? "true" : "false"));
}

QVariant IniUserDefaults::stored(const std::string& key) const {
    file_->sync();
    return file_->value(QString::fromStdString(key));
}

void IniUserDefaults::store(const std::string& key, const QVariant& value) {
    const FileDescriptor lock = lockedFolder(fs::path(path_).parent_path());
    makePrivateFile(path_);
    std::error_code ignored;
    const auto before = fs::last_write_time(path_, ignored);
    file_->setValue(QString::fromStdString(key), value);
    file_->sync();
    // QSettings takes a file of the same size and millisecond for the one it has read, and would
    // lose what another process wrote meanwhile.
    if (fs::last_write_time(path_, ignored) < before + 1ms)
        fs::last_write_time(path_, before + 1ms, ignored);
}

}  // namespace bildkurier
