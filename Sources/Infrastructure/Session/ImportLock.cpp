// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportLock.h"

#include "FileName.h"
#include "SystemCall.h"
#include "SystemError.h"
#include "UserFolders.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

std::unexpected<Error> unusable(const std::string& path, int code) {
    return failure(fmt::format("Die Sperre „{}“ lässt sich nicht anlegen: {}.", displayText(path),
                               systemError(code).message));
}

}  // namespace

ImportLock::ImportLock(std::string path) : path_(std::move(path)) {}

std::string ImportLock::standardPath() { return runtimeFolder() + "/import.lock"; }

Result<> ImportLock::acquire() {
    if (file_) return {};
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), error);
    if (error) return unusable(path_, error.value());
    FileDescriptor file(retried(
        [&] { return ::open(path_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600); }));
    if (!file) return unusable(path_, errno);
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? failure("Es läuft schon ein Import.")
                                    : unusable(path_, errno);
    }
    file_ = std::move(file);
    return {};
}

void ImportLock::release() { file_ = FileDescriptor(); }

}  // namespace bildkurier
