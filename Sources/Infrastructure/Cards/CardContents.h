// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CardSession.h"
#include "MediaContents.h"

#include <memory>

namespace bildkurier {

/// What is on an open card. Downloads run in the background, and fail once the session has
/// ended.
class CardContents final : public MediaContents {
public:
    CardContents(CardCatalogue catalogue, std::shared_ptr<const CardSession> session,
                 Background& background);

    std::optional<Error> obstacle(const CardEntry& entry) const override;
    std::optional<PlacedFile> place(const CardEntry& entry) const override;
    void load(const CardEntry& entry, const DownloadRequest& request,
              NativeDownloadDone done) const override;

private:
    std::shared_ptr<const CardSession> session_;
    Background& background_;
};

}  // namespace bildkurier
