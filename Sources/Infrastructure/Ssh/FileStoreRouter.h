// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <memory>

namespace bildkurier {

/// Local folders and SFTP folders in one: hands every call to the store that its URL is for.
/// Where a file is moved, the target decides.
class FileStoreRouter final : public FileStore {
public:
    FileStoreRouter(std::shared_ptr<FileStore> local, std::shared_ptr<FileStore> sftp);

    Url stagingDirectory(const Url& destination) override;
    Url resolved(const Url& url) override;
    FileListing listing(const Url& folder) override;
    bool fileExists(const Url& url) override;
    std::optional<std::int64_t> fileSize(const Url& url) override;
    bool isWritableDirectory(const Url& url) override;
    bool isNetworkVolume(const Url& url) override;
    std::optional<std::int64_t> availableCapacity(const Url& url) override;
    Result<> createDirectory(const Url& url) override;
    Result<> admitsFiles(const Url& folder) override;
    Result<> moveItem(const Url& source, const Url& target) override;
    void removeItem(const Url& url) override;

private:
    FileStore& storeFor(const Url& url) const { return url.scheme == "sftp" ? *sftp_ : *local_; }

    std::shared_ptr<FileStore> local_;
    std::shared_ptr<FileStore> sftp_;
};

}  // namespace bildkurier
