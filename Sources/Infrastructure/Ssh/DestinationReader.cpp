// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationReader.h"

#include "LocalFileStore.h"
#include "MountTable.h"
#include "SameContent.h"

#include <utility>

namespace bildkurier {

DestinationReader::DestinationReader(std::shared_ptr<SFTPFileStore> server)
    : server_(std::move(server)) {}

Result<ContentReader::Listing> DestinationReader::files(const Url& folder) {
    return folder.isFile() ? LocalFileStore().files(folder) : server_->files(folder);
}

std::vector<std::string> DestinationReader::cautions(const Url& folder,
                                                     const std::optional<Url>& card) {
    const auto volume = folder.isFile() ? mountOf(folder.path) : std::nullopt;
    if (!volume) return {};
    std::vector<std::string> all;
    if (volume->type == "tmpfs" || volume->type == "ramfs")
        all.emplace_back("Das Ziel liegt nur im Arbeitsspeicher dieses Computers.");
    const auto cards = card ? mountOf(card->path) : std::nullopt;
    // Behind the desktop's own mount there are any number of servers and cameras.
    if (cards && cards->device == volume->device && volume->type != "fuse.gvfsd-fuse")
        all.emplace_back("Karte und Ziel liegen auf demselben Datenträger.");
    return all;
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
