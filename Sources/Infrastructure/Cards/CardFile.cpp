// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFile.h"

#include <utility>

namespace bildkurier {

CardFile::CardFile(std::shared_ptr<const MediaContents> contents, std::size_t index)
    : contents_(std::move(contents)), index_(index) {}

FileFacts CardFile::facts() const {
    return {.name = entry().name,
            .size = entry().size,
            .created = entry().taken,
            .fileCreated = entry().modified,
            .obstacle = contents_->obstacle(entry())};
}

std::vector<std::shared_ptr<NativeFile>> CardFile::sidecars() const {
    std::vector<std::shared_ptr<NativeFile>> files;
    for (std::size_t i = 1; i <= entry().sidecars; ++i)
        files.push_back(std::make_shared<CardFile>(contents_, index_ + i));
    return files;
}

void CardFile::download(const DownloadRequest& request, NativeDownloadDone done) {
    contents_->load(entry(), request, std::move(done));
}

}  // namespace bildkurier
