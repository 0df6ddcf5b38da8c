// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardContents.h"

#include "CopyFile.h"
#include "FileName.h"
#include "OpenBelow.h"
#include "SystemError.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <exception>
#include <string>
#include <utility>

namespace bildkurier {

namespace {

Result<> load(const CardCatalogue& catalogue, const CardSession& session, const CardEntry& entry,
              const DownloadRequest& request) {
    const std::string path = catalogue.path(entry);
    if (entry.error != 0) {
        return failure(fmt::format("Ordner {} ist nicht lesbar: {}", displayText(path),
                                   systemError(entry.error).message));
    }
    if (auto reason = session.endReason()) return std::unexpected(*std::move(reason));
    const auto root = session.openRoot();
    if (!root) return std::unexpected(root.error());
    // Not blocked by what may stand there instead of the file by now.
    const FileDescriptor source = openBelow(*root, path, O_RDONLY | O_NONBLOCK);
    if (!source) return unreadableOnCard(errno);
    return copyFile(source, entry.size, request, [&session] { return session.endReason(); });
}

/// The same, were there no memory left either.
Result<> loadOrExplain(const CardCatalogue& catalogue, const CardSession& session,
                       const CardEntry& entry, const DownloadRequest& request) {
    try {
        return load(catalogue, session, entry, request);
    } catch (const std::exception& error) {
        return failure(fmt::format("Die Datei lässt sich nicht laden: {}", error.what()));
    }
}

}  // namespace

CardContents::CardContents(CardCatalogue catalogue, std::shared_ptr<const CardSession> session,
                           Background& background)
    : MediaContents(std::move(catalogue)), session_(std::move(session)), background_(background) {}

void CardContents::load(const CardEntry& entry, const DownloadRequest& request,
                        NativeDownloadDone done) const {
    background_.run(
        [self = shared_from_this(), session = session_, &entry, request, done = std::move(done)] {
            const Result<> loaded = loadOrExplain(self->catalogue(), *session, entry, request);
            if (loaded) {
                done(request.saveAs);
            } else {
                done(std::unexpected(loaded.error()));
            }
        });
}

}  // namespace bildkurier
