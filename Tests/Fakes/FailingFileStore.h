// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace bildkurier {

/// A store whose calls fail on request. Calls that change something fail with `error` and
/// change nothing; queries answer empty, false or absent.
class FailingFileStore final : public FileStore {
public:
    explicit FailingFileStore(std::shared_ptr<FileStore> store) : store_(std::move(store)) {}

    std::optional<std::size_t> failAt;  ///< the call that fails, the first one being 0
    bool forGood = false;               ///< all later ones fail, too
    bool queriesCount = false;          ///< whether queries are counted and fail, too
    bool failsAfterwards = false;       ///< changes take place before they are reported as failed
    Error error{"Auf dem Volume ist kein Platz mehr frei"};
    std::size_t calls = 0;  ///< counted so far

    Url stagingDirectory(const Url& destination) override;
    Url resolved(const Url& url) override { return store_->resolved(url); }
    FileListing listing(const Url& folder) override;
    bool fileExists(const Url& url) override;
    std::optional<std::int64_t> fileSize(const Url& url) override;
    bool isWritableDirectory(const Url& url) override;
    bool isNetworkVolume(const Url& url) override;
    std::optional<std::int64_t> availableCapacity(const Url& url) override;
    Result<> createDirectory(const Url& url) override;
    Result<> admitsFiles(const Url& folder) override { return store_->admitsFiles(folder); }
    Result<> moveItem(const Url& source, const Url& target) override;
    void removeItem(const Url& url) override;

private:
    /// Counts a call and answers whether it fails.
    bool fails();
    template <class Answer>
    Answer query(Answer (FileStore::*ask)(const Url&), const Url& url);
    template <class Change>
    Result<> change(Change change);

    std::shared_ptr<FileStore> store_;
};

}  // namespace bildkurier
