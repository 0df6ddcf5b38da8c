// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFile.h"

#include "CopyFile.h"
#include "FileName.h"
#include "OpenBelow.h"
#include "SystemError.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <exception>
#include <utility>

namespace bildkurier {

namespace {

Result<> load(const CardContents& contents, const CardEntry& entry,
              const DownloadRequest& request) {
    const std::string path = contents.catalogue.path(entry);
    if (entry.error != 0) {
        return failure(fmt::format("Ordner {} ist nicht lesbar: {}", displayText(path),
                                   systemError(entry.error).message));
    }
    if (auto reason = contents.session->endReason()) return std::unexpected(*std::move(reason));
    const auto root = contents.session->openRoot();
    if (!root) return std::unexpected(root.error());
    // Not blocked by what may stand there instead of the file by now.
    const FileDescriptor source = openBelow(*root, path, O_RDONLY | O_NONBLOCK);
    if (!source) return unreadableOnCard(errno);
    return copyFile(source, entry.size, request,
                    [&session = *contents.session] { return session.endReason(); });
}

/// The same, were there no memory left either.
Result<> loadOrExplain(const CardContents& contents, const CardEntry& entry,
                       const DownloadRequest& request) {
    try {
        return load(contents, entry, request);
    } catch (const std::exception& error) {
        return failure(fmt::format("Die Datei lässt sich nicht laden: {}", error.what()));
    }
}

}  // namespace

CardFile::CardFile(std::shared_ptr<const CardContents> contents, std::size_t index)
    : contents_(std::move(contents)), index_(index) {}

FileFacts CardFile::facts() const {
    return {.name = entry().name,
            .size = entry().size,
            .created = entry().taken,
            .fileCreated = entry().modified};
}

std::vector<std::shared_ptr<NativeFile>> CardFile::sidecars() const {
    std::vector<std::shared_ptr<NativeFile>> files;
    for (std::size_t i = 1; i <= entry().sidecars; ++i)
        files.push_back(std::make_shared<CardFile>(contents_, index_ + i));
    return files;
}

void CardFile::download(const DownloadRequest& request, NativeDownloadDone done) {
    contents_->background.run(
        [contents = contents_, &entry = entry(), request, done = std::move(done)] {
            const Result<> loaded = loadOrExplain(*contents, entry, request);
            if (loaded) {
                done(request.saveAs);
            } else {
                done(std::unexpected(loaded.error()));
            }
        });
}

}  // namespace bildkurier
