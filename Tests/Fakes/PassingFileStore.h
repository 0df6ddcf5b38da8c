// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <memory>
#include <utility>

namespace bildkurier {

/// Passes everything on to another store.
class PassingFileStore : public FileStore {
public:
    explicit PassingFileStore(std::shared_ptr<FileStore> store) : store_(std::move(store)) {}

    Url stagingDirectory(const Url& destination) override {
        return store_->stagingDirectory(destination);
    }
    Url resolved(const Url& url) override { return store_->resolved(url); }
    FileListing listing(const Url& folder) override { return store_->listing(folder); }
    bool fileExists(const Url& url) override { return store_->fileExists(url); }
    std::optional<std::int64_t> fileSize(const Url& url) override { return store_->fileSize(url); }
    bool isWritableDirectory(const Url& url) override { return store_->isWritableDirectory(url); }
    bool isNetworkVolume(const Url& url) override { return store_->isNetworkVolume(url); }
    std::optional<std::int64_t> availableCapacity(const Url& url) override {
        return store_->availableCapacity(url);
    }
    Result<> createDirectory(const Url& url) override { return store_->createDirectory(url); }
    Result<> admitsFiles(const Url& folder) override { return store_->admitsFiles(folder); }
    Result<> moveItem(const Url& source, const Url& target) override {
        return store_->moveItem(source, target);
    }
    void removeItem(const Url& url) override { store_->removeItem(url); }

private:
    std::shared_ptr<FileStore> store_;
};

}  // namespace bildkurier
