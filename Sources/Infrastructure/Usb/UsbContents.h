// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraWorker.h"
#include "MediaContents.h"
#include "UsbSession.h"

#include <memory>

namespace bildkurier {

/// What is on an open camera. Downloads run one after the other.
class UsbContents final : public MediaContents {
public:
    UsbContents(CardCatalogue catalogue, std::shared_ptr<UsbSession> session,
                std::shared_ptr<CameraWorker> worker);

    std::optional<Error> obstacle(const CardEntry& entry) const override;
    void load(const CardEntry& entry, const DownloadRequest& request,
              NativeDownloadDone done) const override;

private:
    std::shared_ptr<UsbSession> session_;
    std::shared_ptr<CameraWorker> worker_;
};

}  // namespace bildkurier
