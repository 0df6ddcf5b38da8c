// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStoreRouter.h"

#include <utility>

namespace bildkurier {

FileStoreRouter::FileStoreRouter(std::shared_ptr<FileStore> local, std::shared_ptr<FileStore> sftp)
    : local_(std::move(local)), sftp_(std::move(sftp)) {}

Url FileStoreRouter::stagingDirectory(const Url& destination) {
    return storeFor(destination).stagingDirectory(destination);
}

Url FileStoreRouter::resolved(const Url& url) { return storeFor(url).resolved(url); }

FileListing FileStoreRouter::listing(const Url& folder) { return storeFor(folder).listing(folder); }

bool FileStoreRouter::fileExists(const Url& url) { return storeFor(url).fileExists(url); }

std::optional<std::int64_t> FileStoreRouter::fileSize(const Url& url) {
    return storeFor(url).fileSize(url);
}

bool FileStoreRouter::isWritableDirectory(const Url& url) {
    return storeFor(url).isWritableDirectory(url);
}

bool FileStoreRouter::isNetworkVolume(const Url& url) { return storeFor(url).isNetworkVolume(url); }

std::optional<std::int64_t> FileStoreRouter::availableCapacity(const Url& url) {
    return storeFor(url).availableCapacity(url);
}

Result<> FileStoreRouter::createDirectory(const Url& url) {
    return storeFor(url).createDirectory(url);
}

Result<> FileStoreRouter::admitsFiles(const Url& folder) {
    return storeFor(folder).admitsFiles(folder);
}

Result<> FileStoreRouter::moveItem(const Url& source, const Url& target) {
    return storeFor(target).moveItem(source, target);
}

void FileStoreRouter::removeItem(const Url& url) { storeFor(url).removeItem(url); }

}  // namespace bildkurier
