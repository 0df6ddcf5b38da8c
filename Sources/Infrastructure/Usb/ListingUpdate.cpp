// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingUpdate.h"

#include "CameraLister.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace bildkurier {

namespace {

bool isUnreadFolder(const CardEntry& entry) {
    return entry.error != 0 && entry.type == CardFileType::Other;
}

bool isBetter(const CardEntry& found, const CardEntry& known) {
    const bool differs = found.size != known.size || found.modified != known.modified;
    return found.error == 0 && (known.error != 0 || differs);
}

bool updateFolder(std::vector<CardEntry>& known, const std::vector<CardEntry>& found) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < known.size(); ++i) places.emplace(known[i].name, i);
    bool changed = false;
    for (const CardEntry& entry : found) {
        const auto [place, isNew] = places.emplace(entry.name, known.size());
        if (isNew) {
            known.push_back(entry);
        } else if (isBetter(entry, known[place->second])) {
            known[place->second] = entry;
        } else {
            continue;
        }
        changed = changed || entry.type != CardFileType::Other || entry.error != 0;
    }
    return changed;
}

/// Whether something may be missing of the folder of that name in `parent`, or of one above it.
bool lacks(const CardListing& listing, std::string_view parent, std::string_view name) {
    const auto beside = listing.find(parent);
    const auto isUnread = [name](const CardEntry& entry) {
        return isUnreadFolder(entry) && entry.name == name;
    };
    if (beside != listing.end() && std::ranges::any_of(beside->second, isUnread)) return true;
    if (parent.empty())
        return name != CameraLister::wholeCard && lacks(listing, "", CameraLister::wholeCard);
    const std::size_t slash = parent.rfind('/');
    if (slash == std::string_view::npos) return lacks(listing, "", parent);
    return lacks(listing, parent.substr(0, slash), parent.substr(slash + 1));
}

}  // namespace

bool updateListing(CardListing& known, const CardListing& found) {
    bool changed = false;
    for (const auto& [folder, entries] : found)
        changed = updateFolder(known[folder], entries) || changed;
    return changed;
}

bool dropReadFolders(CardListing& known, const CardListing& found) {
    std::size_t dropped = 0;
    for (auto& folder : known) {
        dropped += std::erase_if(folder.second, [&](const CardEntry& entry) {
            return isUnreadFolder(entry) && !lacks(found, folder.first, entry.name);
        });
    }
    return dropped != 0;
}

}  // namespace bildkurier
