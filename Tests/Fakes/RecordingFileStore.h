// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// Passes everything on to another store and remembers what it was asked, as "name path".
class RecordingFileStore final : public FileStore {
public:
    explicit RecordingFileStore(std::shared_ptr<FileStore> store) : store_(std::move(store)) {}

    std::vector<std::string> calls;

    Url stagingDirectory(const Url& destination) override {
        return noted("stagingDirectory", destination).stagingDirectory(destination);
    }
    Url resolved(const Url& url) override { return noted("resolved", url).resolved(url); }
    FileListing listing(const Url& folder) override {
        return noted("listing", folder).listing(folder);
    }
    bool fileExists(const Url& url) override { return noted("fileExists", url).fileExists(url); }
    std::optional<std::int64_t> fileSize(const Url& url) override {
        return noted("fileSize", url).fileSize(url);
    }
    bool isWritableDirectory(const Url& url) override {
        return noted("isWritableDirectory", url).isWritableDirectory(url);
    }
    bool isNetworkVolume(const Url& url) override {
        return noted("isNetworkVolume", url).isNetworkVolume(url);
    }
    std::optional<std::int64_t> availableCapacity(const Url& url) override {
        return noted("availableCapacity", url).availableCapacity(url);
    }
    Result<> createDirectory(const Url& url) override {
        return noted("createDirectory", url).createDirectory(url);
    }
    Result<> admitsFiles(const Url& folder) override {
        return noted("admitsFiles", folder).admitsFiles(folder);
    }
    Result<> moveItem(const Url& source, const Url& target) override {
        return noted("moveItem", source).moveItem(source, target);
    }
    void removeItem(const Url& url) override { noted("removeItem", url).removeItem(url); }

private:
    FileStore& noted(const char* name, const Url& url) {
        calls.push_back(std::string(name) + " " + url.path);
        return *store_;
    }

    std::shared_ptr<FileStore> store_;
};

}  // namespace bildkurier
