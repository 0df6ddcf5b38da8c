// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbContents.h"

#include <utility>

namespace bildkurier {

UsbContents::UsbContents(CardCatalogue catalogue, std::shared_ptr<UsbSession> session,
                         std::shared_ptr<CameraWorker> worker)
    : MediaContents(std::move(catalogue)),
      session_(std::move(session)),
      worker_(std::move(worker)) {}

void UsbContents::load(const CardEntry& entry, const DownloadRequest& request,
                       NativeDownloadDone done) const {
    worker_->load(session_,
                  std::shared_ptr<UsbLoad>(new UsbLoad{.catalogue = shared_from_this(),
                                                       .entry = entry,
                                                       .folder = catalogue().folders[entry.folder],
                                                       .request = request,
                                                       .done = std::move(done)}));
}

}  // namespace bildkurier
