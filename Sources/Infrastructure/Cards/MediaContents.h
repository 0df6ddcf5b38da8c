// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardCatalogue.h"
#include "NativeCamera.h"

#include <memory>
#include <utility>
#include <vector>

namespace bildkurier {

/// What is on an open device, and how its files are loaded; shared by all of them.
class MediaContents : public std::enable_shared_from_this<MediaContents> {
public:
    explicit MediaContents(CardCatalogue catalogue) : catalogue_(std::move(catalogue)) {}
    virtual ~MediaContents() = default;

    const CardCatalogue& catalogue() const { return catalogue_; }

    /// The files in their own right.
    std::vector<NativeItem> mediaFiles() const;

    /// Why an entry of the catalogue cannot be loaded, where that is known.
    virtual std::optional<Error> obstacle(const CardEntry& entry) const = 0;

    /// Where an entry of the catalogue can be read on this computer without a download, if it can.
    virtual std::optional<PlacedFile> place(const CardEntry& /*entry*/) const {
        return std::nullopt;
    }

    /// `entry` is of the catalogue. `done` is called exactly once, on any thread.
    virtual void load(const CardEntry& entry, const DownloadRequest& request,
                      NativeDownloadDone done) const = 0;

private:
    CardCatalogue catalogue_;
};

}  // namespace bildkurier
