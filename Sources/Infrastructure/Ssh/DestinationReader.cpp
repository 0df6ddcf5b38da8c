// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationReader.h"

#include "LocalFileStore.h"
#include "SameContent.h"

#include <utility>

namespace bildkurier {

DestinationReader::DestinationReader(std::shared_ptr<SFTPFileStore> server)
    : server_(std::move(server)) {}

Result<ContentReader::Listing> DestinationReader::files(const Url& folder) {
    return folder.isFile() ? LocalFileStore().files(folder) : server_->files(folder);
}

std::vector<Result<PlacedFile>> DestinationReader::fetch(std::span<const File> files,
                                                         const Url& staging,
                                                         const std::string& prefix) {
    if (!files.empty() && !files.front().place.folder.isFile())
        return server_->download(files, staging, prefix);
    std::vector<Result<PlacedFile>> places;
    places.reserve(files.size());
    for (const File& file : files) places.emplace_back(file.place);
    return places;
}

Result<bool> DestinationReader::haveSameContent(const PlacedFile& one, const PlacedFile& other,
                                                std::int64_t size, const Step& step) {
    return bildkurier::haveSameContent(one, other, size, step);
}

}  // namespace bildkurier
