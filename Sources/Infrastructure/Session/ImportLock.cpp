// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportLock.h"

#include "Fassung.h"
#include "FileName.h"
#include "LocalFileStore.h"
#include "SystemCall.h"
#include "SystemError.h"
#include "UserFolders.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

constexpr auto fileName = "/import.lock";

std::unexpected<Error> unusable(const std::string& path, int code) {
    return failure(fmt::format("Die Sperre „{}“ lässt sich nicht anlegen: {}.", displayText(path),
                               systemError(code).message));
}

/// Whether the folder lies on a server, or will once it is made.
bool isOnNetwork(std::filesystem::path folder) {
    std::error_code error;
    while (!std::filesystem::exists(folder, error) && folder != folder.parent_path())
        folder = folder.parent_path();
    return LocalFileStore().isNetworkVolume(Url::file(folder.string()));
}

/// Makes the file and locks it; no file where another process holds the lock.
Result<std::optional<FileDescriptor>> lockedFile(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    if (error) return unusable(path, error.value());
    FileDescriptor file(retried(
        [&] { return ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600); }));
    if (!file) return unusable(path, errno);
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) return file;
    if (errno != EWOULDBLOCK) return unusable(path, errno);
    return std::nullopt;
}

}  // namespace

ImportLock::ImportLock(std::vector<std::string> paths) : paths_(std::move(paths)) {}

std::vector<std::string> ImportLock::standardPaths() {
    std::vector<std::string> paths{runtimeFolder() + fileName};
    const std::string staging = Fassung::zwischenOrdner(cachesFolder()).path;
    if (!isOnNetwork(staging)) paths.push_back(staging + fileName);
    return paths;
}

Result<> ImportLock::acquire() {
    if (!files_.empty()) return {};
    std::vector<FileDescriptor> files;
    std::optional<Error> obstacle;
    for (const auto& path : paths_) {
        auto file = lockedFile(path);
        if (file && !*file) return failure("Es läuft schon ein Import.");
        if (file) {
            files.push_back(**std::move(file));
        } else if (!obstacle) {
            obstacle = std::move(file).error();
        }
    }
    if (files.empty() && obstacle) return std::unexpected(*std::move(obstacle));
    files_ = std::move(files);
    return {};
}

void ImportLock::release() { files_.clear(); }

}  // namespace bildkurier
