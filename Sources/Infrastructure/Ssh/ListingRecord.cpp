// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingRecord.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

namespace {

Url withSlash(Url folder) {
    folder.path = folder.appending("").path;
    return folder;
}

/// Whether `url` is `folder`, which ends in a slash, or in there, as far as their names tell.
bool isWithin(const Url& url, const Url& folder) {
    return url.scheme == folder.scheme && url.user == folder.user && url.host == folder.host &&
           url.port == folder.port && url.path.starts_with(folder.path);
}

}  // namespace

std::uint64_t ListingRecord::begin() {
    const std::lock_guard lock(mutex_);
    return ++begun_;
}

void ListingRecord::note(std::uint64_t number, const Url& folder,
                         std::optional<std::string> trouble) {
    Listing listing{withSlash(folder), std::move(trouble), number};
    const std::lock_guard lock(mutex_);
    const auto isNewer = [&](const Listing& other) {
        return other.number > number && isWithin(listing.folder, other.folder);
    };
    if (std::ranges::any_of(listings_, isNewer)) return;
    std::erase_if(listings_, [&](const Listing& other) {
        return other.number <= number && isWithin(other.folder, listing.folder);
    });
    listings_.push_back(std::move(listing));
}

std::optional<std::string> ListingRecord::troubleAbove(const Url& url) const {
    const std::lock_guard lock(mutex_);
    // The deepest folder tells: it was listed for itself, or after what is above it.
    const Listing* nearest = nullptr;
    for (const Listing& listing : listings_) {
        const auto length = listing.folder.path.size();
        const bool isNearer = !nearest || length > nearest->folder.path.size();
        if (isNearer && length < url.path.size() && isWithin(url, listing.folder))
            nearest = &listing;
    }
    return nearest ? nearest->trouble : std::nullopt;
}

}  // namespace bildkurier
