// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ContentReader.h"
#include "DurableFolders.h"
#include "FileStore.h"

#include <vector>

namespace bildkurier {

/// Folders of this computer, on any mounted volume. Every call asks the file system afresh;
/// only which folders are durable is remembered.
class LocalFileStore final : public FileStore {
public:
    Url stagingDirectory(const Url& destination) override;
    Url resolved(const Url& url) override;
    FileListing listing(const Url& folder) override;
    bool fileExists(const Url& url) override;
    std::optional<std::int64_t> fileSize(const Url& url) override;
    bool isWritableDirectory(const Url& url) override;
    bool isNetworkVolume(const Url& url) override;
    std::optional<std::int64_t> availableCapacity(const Url& url) override;
    Result<> createDirectory(const Url& url) override;
    Result<> moveItem(const Url& source, const Url& target) override;
    void removeItem(const Url& url) override;

    /// The files whose keys `listing` answers. One that is missing has none; fails where
    /// the folder itself cannot be read.
    Result<ContentReader::Listing> files(const Url& folder);

private:
    DurableFolders folders_;
};

}  // namespace bildkurier
