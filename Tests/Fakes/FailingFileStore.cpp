// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FailingFileStore.h"

namespace bildkurier {

bool FailingFileStore::fails() {
    const std::size_t call = calls++;
    return failAt && (call == *failAt || (forGood && call > *failAt));
}

template <class Answer>
Answer FailingFileStore::query(Answer (FileStore::*ask)(const Url&), const Url& url) {
    if (queriesCount && fails()) return {};
    return ((*store_).*ask)(url);
}

template <class Change>
Result<> FailingFileStore::change(Change change) {
    if (!fails()) return change();
    if (failsAfterwards) static_cast<void>(change());
    return std::unexpected(error);
}

Url FailingFileStore::stagingDirectory(const Url& destination) {
    return store_->stagingDirectory(destination);
}

FileListing FailingFileStore::listing(const Url& folder) {
    return query(&FileStore::listing, folder);
}

bool FailingFileStore::fileExists(const Url& url) { return query(&FileStore::fileExists, url); }

std::optional<std::int64_t> FailingFileStore::fileSize(const Url& url) {
    return query(&FileStore::fileSize, url);
}

bool FailingFileStore::isWritableDirectory(const Url& url) {
    return query(&FileStore::isWritableDirectory, url);
}

bool FailingFileStore::isNetworkVolume(const Url& url) {
    return query(&FileStore::isNetworkVolume, url);
}

std::optional<std::int64_t> FailingFileStore::availableCapacity(const Url& url) {
    return query(&FileStore::availableCapacity, url);
}

Result<> FailingFileStore::createDirectory(const Url& url) {
    return change([&] { return store_->createDirectory(url); });
}

Result<> FailingFileStore::moveItem(const Url& source, const Url& target) {
    return change([&] { return store_->moveItem(source, target); });
}

void FailingFileStore::removeItem(const Url& url) {
    static_cast<void>(change([&]() -> Result<> {
        store_->removeItem(url);
        return {};
    }));
}

}  // namespace bildkurier
