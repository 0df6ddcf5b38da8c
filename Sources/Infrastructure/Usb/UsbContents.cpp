// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbContents.h"

#include "FileName.h"

#include <fmt/format.h>

#include <utility>

namespace bildkurier {

UsbContents::UsbContents(CardCatalogue catalogue, std::shared_ptr<UsbSession> session,
                         std::shared_ptr<CameraWorker> worker)
    : MediaContents(std::move(catalogue)),
      session_(std::move(session)),
      worker_(std::move(worker)) {}

std::optional<Error> UsbContents::obstacle(const CardEntry& entry) const {
    if (entry.error == 0) return std::nullopt;
    return Error{fmt::format("Auf der Kamera nicht lesbar: {}/{}",
                             displayText(catalogue().folders[entry.folder]),
                             displayText(entry.name))};
}

void UsbContents::load(const CardEntry& entry, const DownloadRequest& request,
                       NativeDownloadDone done) const {
    if (auto reason = obstacle(entry)) return done(std::unexpected(*std::move(reason)));
    worker_->load(session_,
                  std::shared_ptr<UsbLoad>(new UsbLoad{.catalogue = shared_from_this(),
                                                       .entry = entry,
                                                       .folder = catalogue().folders[entry.folder],
                                                       .request = request,
                                                       .done = std::move(done)}));
}

}  // namespace bildkurier
