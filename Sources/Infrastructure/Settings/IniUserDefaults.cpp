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

/// Waits for the processes that write below the folder, or with LOCK_EX also for those that read,
/// and keeps them out while it lives, where the file system can lock.
FileDescriptor locked(const fs::path& folder, int operation) {
    FileDescriptor descriptor(
        retried([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    retried([&] { return ::flock(descriptor.get(), operation); });
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

// QSettings takes a file for the one it has read when it has the same size and millisecond, and
// asks for these after reading. So nobody may write meanwhile, and no two versions may have the
// same; else what one process writes is lost when the other does.

IniUserDefaults::IniUserDefaults(std::string path)
    : path_(std::move(path)), folder_(fs::path(path_).parent_path()) {
    const FileDescriptor lock = locked(folder_, LOCK_SH);
    open();
}

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

bool IniUserDefaults::lostChanges() const { return file_->status() == QSettings::AccessError; }

void IniUserDefaults::open() {
    file_ = std::make_unique<QSettings>(QString::fromStdString(path_), QSettings::IniFormat);
}

QVariant IniUserDefaults::stored(const std::string& key) const {
    const FileDescriptor lock = locked(folder_, LOCK_SH);
    file_->sync();
    return file_->value(QString::fromStdString(key));
}

void IniUserDefaults::store(const std::string& key, const QVariant& value) {
    std::error_code ignored;
    fs::create_directories(folder_, ignored);
    const FileDescriptor lock = locked(folder_, LOCK_EX);
    makePrivateFile(path_);
    // QSettings keeps the first fault that it has met: a line that it could not read would hide
    // that the file cannot be written.
    if (file_->status() == QSettings::FormatError) open();
    const auto next = fs::last_write_time(path_, ignored) + 1ms;
    file_->setValue(QString::fromStdString(key), value);
    file_->sync();
    if (fs::last_write_time(path_, ignored) < next) fs::last_write_time(path_, next, ignored);
}

}  // namespace bildkurier
