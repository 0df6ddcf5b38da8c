// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalFileStore.h"

#include "DirectoryWalk.h"
#include "DurableFiles.h"
#include "FileDescriptor.h"
#include "MountTable.h"
#include "SystemCall.h"
#include "SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

/// Empty, where nothing ever is, for a path that no file system can hold.
std::string localPath(const Url& url) {
    std::string path = url.path;
    if (path.find('\0') != std::string::npos) return {};
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

/// What is at `url` itself, be it a link that leads nowhere.
std::optional<struct stat> factsOf(const Url& url) {
    struct stat facts{};
    if (::lstat(localPath(url).c_str(), &facts) != 0) return {};
    return facts;
}

Result<> outcome(int error) {
    if (error != 0) return std::unexpected(systemError(error));
    return {};
}

/// One thing that cannot be removed does not keep the rest. Goes through no link.
void removeTree(const std::filesystem::path& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::remove_all(path, error);
    if (!error) return;
    constexpr auto how = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const FileDescriptor folder(retried([&] { return ::open(path.c_str(), how); }));
    if (!folder) return;
    std::vector<fs::path> below;
    fs::directory_iterator entry("/proc/self/fd/" + std::to_string(folder.get()), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        below.push_back(entry->path());
    for (const fs::path& each : below) removeTree(each);
    fs::remove(path, error);
}

/// What one worker of a scan has found, apart from what the others write.
struct alignas(64) FoundKeys {
    std::vector<std::string> keys;
};

}  // namespace

Url LocalFileStore::stagingDirectory(const Url& destination) {
    return destination.appending(".bildkurier-tmp");
}

FileKeys LocalFileStore::existingFileKeys(const Url& folder) {
    // A disk is soon busy; a server answers many questions while one waits.
    const std::size_t workers =
        isNetworkVolume(folder) ? 24 : std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
    std::vector<FoundKeys> found(workers);
    walkFiles(localPath(folder), {.workers = workers, .cancelled = {}},
              {.file =
                   [&](std::size_t worker, const WalkedFile& file) {
                       found[worker].keys.push_back(fileKey(file.name, file.size));
                   },
               .unreadable = {}});
    FileKeys keys;
    keys.reserve(std::transform_reduce(found.begin(), found.end(), std::size_t{0}, std::plus(),
                                       [](const FoundKeys& part) { return part.keys.size(); }));
    for (auto& part : found)
        for (auto& key : part.keys) keys.insert(std::move(key));
    return keys;
}

bool LocalFileStore::fileExists(const Url& url) { return factsOf(url).has_value(); }

std::optional<std::int64_t> LocalFileStore::fileSize(const Url& url) {
    const auto facts = factsOf(url);
    if (!facts || !S_ISREG(facts->st_mode)) return {};
    return facts->st_size;
}

bool LocalFileStore::isWritableDirectory(const Url& url) {
    const std::string path = localPath(url);
    struct stat facts{};
    // Only what may be read can be opened and its names made durable.
    return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           ::faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

bool LocalFileStore::isNetworkVolume(const Url& url) {
    const auto mount = mountOf(localPath(url));
    return mount && isNetworkMount(*mount);
}

std::optional<std::int64_t> LocalFileStore::availableCapacity(const Url& url) {
    struct statvfs volume{};
    if (::statvfs(localPath(url).c_str(), &volume) != 0) return {};
    // Some file systems over a network cannot tell, and say that they have no blocks at all.
    if (volume.f_blocks == 0) return {};
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    std::int64_t bytes = 0;
    return __builtin_mul_overflow(volume.f_bavail, volume.f_frsize, &bytes) ? most : bytes;
}

Result<> LocalFileStore::createDirectory(const Url& url) {
    return outcome(makeFolder(localPath(url)));
}

Result<> LocalFileStore::moveItem(const Url& source, const Url& target) {
    return outcome(moveFile(localPath(source), localPath(target)));
}

void LocalFileStore::removeItem(const Url& url) {
    const std::string path = localPath(url);
    if (path != "/") removeTree(path);
}

}  // namespace bildkurier
