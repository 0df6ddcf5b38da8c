// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImageCaptureFile.h"

#include <utility>

namespace bildkurier {

ImageCaptureFile::ImageCaptureFile(std::shared_ptr<NativeFile> file) : file_(std::move(file)) {}

std::optional<std::string> ImageCaptureFile::name() const { return file_->facts().name; }

std::int64_t ImageCaptureFile::size() const { return file_->facts().size; }

std::optional<Date> ImageCaptureFile::shotDate() const { return candidate().shotDate; }

ImportCandidate ImageCaptureFile::candidate() const {
    FileFacts facts = file_->facts();
    return {.name = std::move(facts.name),
            .size = facts.size,
            .shotDate = facts.created ? facts.created : facts.fileCreated,
            .isObstructed = facts.obstacle.has_value()};
}

std::optional<Error> ImageCaptureFile::obstacle() const { return file_->facts().obstacle; }

void ImageCaptureFile::download(const Url& folder, const std::string& name,
                                DownloadCompletion done) {
    file_->download({.directory = folder.path, .saveAs = name, .overwrite = true}, std::move(done));
}

}  // namespace bildkurier
