// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LocalFileStore.h"

#include "DirectoryWalk.h"
#include "DurableFiles.h"
#include "FileDescriptor.h"
#include "MarkedFolder.h"
#include "MountTable.h"
#include "ResolvedPath.h"
#include "SystemCall.h"
#include "SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <mutex>
#include <numeric>
#include <string_view>
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
template <class Item>
struct alignas(64) FoundItems {
    std::vector<Item> items;
};

/// What `make` makes of every regular file below `folder`, by worker.
template <class Item, class Make>
std::vector<FoundItems<Item>> scanned(
    const Url& folder, bool isOnNetwork, Make make,
    std::function<void(std::size_t, std::string_view, int)> unreadable = {}) {
    // A disk is soon busy; a server answers many questions while one waits.
    const std::size_t workers =
        isOnNetwork ? 24 : std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
    std::vector<FoundItems<Item>> found(workers);
    walkFiles(localPath(folder), {.workers = workers, .cancelled = {}},
              {.file = [&](std::size_t worker,
                           const WalkedFile& file) { found[worker].items.push_back(make(file)); },
               .unreadable = std::move(unreadable)});
    return found;
}

template <class Item>
std::size_t count(const std::vector<FoundItems<Item>>& found) {
    return std::transform_reduce(found.begin(), found.end(), std::size_t{0}, std::plus(),
                                 [](const auto& part) { return part.items.size(); });
}

}  // namespace

Url LocalFileStore::stagingDirectory(const Url& destination) {
    return destination.appending(".bildkurier-tmp");
}

Url LocalFileStore::resolved(const Url& url) { return Url::file(resolvedPath(localPath(url))); }

FileListing LocalFileStore::listing(const Url& folder) {
    auto found = scanned<std::string>(folder, isNetworkVolume(folder), [](const WalkedFile& file) {
        return fileKey(file.name, file.size);
    });
    FileKeys keys;
    keys.reserve(count(found));
    for (auto& part : found)
        for (auto& key : part.items) keys.insert(std::move(key));
    return {.keys = std::move(keys)};
}

Result<ContentReader::Listing> LocalFileStore::files(const Url& folder) {
    using File = ContentReader::File;
    ContentReader::Listing listing;
    const Url root = Url::file(localPath(folder));
    const FileDescriptor opened = openFolder(root.path, O_RDONLY);
    const auto mark = opened ? markOf(opened) : std::nullopt;
    if (!mark && errno == ENOENT) return listing;
    if (!mark) return std::unexpected(systemError(errno));
    int rootError = 0;
    std::mutex guard;  // of this and the listing
    auto found = scanned<File>(
        Url::file("/proc/self/fd/" + std::to_string(opened.get())), isNetworkVolume(folder),
        [&](const WalkedFile& file) {
            std::string path(file.folder);
            if (!path.empty()) path += '/';
            return File{.place = {.folder = root, .path = path.append(file.name), .mark = mark},
                        .size = file.size};
        },
        [&](std::size_t, std::string_view path, int error) {
            const std::scoped_lock lock(guard);
            if (path.empty()) {
                rootError = error;
            } else {
                listing.unreadable.emplace_back(path);
            }
        });
    if (rootError != 0) return std::unexpected(systemError(rootError));
    listing.files.reserve(count(found));
    for (auto& part : found) std::ranges::move(part.items, std::back_inserter(listing.files));
    std::ranges::sort(listing.unreadable);
    return listing;
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
    return outcome(folders_.make(localPath(url)));
}

Result<> LocalFileStore::moveItem(const Url& source, const Url& target) {
    return outcome(moveFile(localPath(source), localPath(target)));
}

void LocalFileStore::removeItem(const Url& url) {
    const std::string path = localPath(url);
    if (path != "/") removeTree(path);
}

}  // namespace bildkurier
