// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "NativeCamera.h"

#include <memory>

namespace bildkurier {

/// A camera file as the import sees it.
class ImageCaptureFile final : public CameraFile {
public:
    explicit ImageCaptureFile(std::shared_ptr<NativeFile> file);

    std::optional<std::string> name() const override;
    std::int64_t size() const override;
    std::optional<Date> shotDate() const override;
    ImportCandidate candidate() const override;
    std::optional<Error> obstacle() const override;
    std::optional<PlacedFile> place() const override;
    void download(const Url& folder, const std::string& name, DownloadCompletion done) override;

private:
    std::shared_ptr<NativeFile> file_;
};

}  // namespace bildkurier
