// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MediaContents.h"
#include "NativeCamera.h"

#include <cstddef>
#include <memory>

namespace bildkurier {

/// A file on an open card or camera: one entry of its catalogue.
class CardFile final : public NativeFile {
public:
    CardFile(std::shared_ptr<const MediaContents> contents, std::size_t index);

    FileFacts facts() const override;
    std::vector<std::shared_ptr<NativeFile>> sidecars() const override;
    std::optional<PlacedFile> place() const override { return contents_->place(entry()); }

    /// Fails once the session has ended.
    void download(const DownloadRequest& request, NativeDownloadDone done) override;

private:
    const CardEntry& entry() const { return contents_->catalogue().entries[index_]; }

    std::shared_ptr<const MediaContents> contents_;
    std::size_t index_;
};

}  // namespace bildkurier
