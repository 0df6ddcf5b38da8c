// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace bildkurier {

/// Another store in which the link /link leads to a folder.
class LinkedFolder final : public FileStore {
public:
    explicit LinkedFolder(std::shared_ptr<FileStore> store) : store_(std::move(store)) {}

    std::string leadsTo = "/bilder";  ///< path

    Url stagingDirectory(const Url& destination) override {
        return store_->stagingDirectory(destination);
    }
    Url resolved(const Url& url) override {
        constexpr std::string_view link = "/link";
        Url found = url;
        if (found.appending("").path.starts_with("/link/"))
            found.path.replace(0, link.size(), leadsTo);
        return found;
    }
    FileListing listing(const Url& folder) override { return store_->listing(resolved(folder)); }
    bool fileExists(const Url& url) override { return store_->fileExists(resolved(url)); }
    std::optional<std::int64_t> fileSize(const Url& url) override {
        return store_->fileSize(resolved(url));
    }
    bool isWritableDirectory(const Url& url) override {
        return store_->isWritableDirectory(resolved(url));
    }
    bool isNetworkVolume(const Url& url) override { return store_->isNetworkVolume(resolved(url)); }
    std::optional<std::int64_t> availableCapacity(const Url& url) override {
        return store_->availableCapacity(resolved(url));
    }
    Result<> createDirectory(const Url& url) override {
        return store_->createDirectory(resolved(url));
    }
    Result<> admitsFiles(const Url& folder) override {
        return store_->admitsFiles(resolved(folder));
    }
    Result<> moveItem(const Url& source, const Url& target) override {
        return store_->moveItem(resolved(source), resolved(target));
    }
    void removeItem(const Url& url) override { store_->removeItem(resolved(url)); }

private:
    std::shared_ptr<FileStore> store_;
};

}  // namespace bildkurier
