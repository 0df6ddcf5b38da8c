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

Result<> load(const CardContents& contents, const CardSession& session, const CardEntry& entry,
              const DownloadRequest& request) {
    if (auto obstacle = contents.obstacle(entry)) return std::unexpected(*std::move(obstacle));
    if (auto reason = session.endReason()) return std::unexpected(*std::move(reason));
    const auto root = session.openRoot();
    if (!root) return std::unexpected(root.error());
    // Not blocked by what may stand there instead of the file by now.
    const FileDescriptor source =
        openBelow(*root, contents.catalogue().path(entry), O_RDONLY | O_NONBLOCK);
    if (!source) return unreadableOnCard(errno);
    return copyFile(source, entry.size, request, [&session] { return session.endReason(); });
}

/// The same, were there no memory left either.
Result<> loadOrExplain(const CardContents& contents, const CardSession& session,
                       const CardEntry& entry, const DownloadRequest& request) {
    try {
        return load(contents, session, entry, request);
    } catch (const std::exception& error) {
        return failure(fmt::format("Die Datei lässt sich nicht laden: {}", error.what()));
    }
}

}  // namespace

CardContents::CardContents(CardCatalogue catalogue, std::shared_ptr<const CardSession> session,
                           Background& background)
    : MediaContents(std::move(catalogue)), session_(std::move(session)), background_(background) {}

std::optional<Error> CardContents::obstacle(const CardEntry& entry) const {
    if (entry.error == 0) return std::nullopt;
    return Error{fmt::format("Ordner {} ist nicht lesbar: {}", displayText(catalogue().path(entry)),
                             systemError(entry.error).message)};
}

std::optional<PlacedFile> CardContents::place(const CardEntry& entry) const {
    if (session_->hasEnded()) return std::nullopt;
    return PlacedFile{.folder = Url::file(session_->place().root),
                      .path = catalogue().path(entry),
                      .mark = session_->place().mark};
}

void CardContents::load(const CardEntry& entry, const DownloadRequest& request,
                        NativeDownloadDone done) const {
    background_.run([self = std::static_pointer_cast<const CardContents>(shared_from_this()),
                     session = session_, &entry, request, done = std::move(done)] {
        const Result<> loaded = loadOrExplain(*self, *session, entry, request);
        if (loaded) {
            done(request.saveAs);
        } else {
            done(std::unexpected(loaded.error()));
        }
    });
}

}  // namespace bildkurier
