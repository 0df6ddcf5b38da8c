// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardCatalogue.h"

#include "CardBookkeeping.h"
#include "FileName.h"
#include "LetterCase.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace bildkurier {

namespace {

using enum CardFileType;

bool canBelong(CardFileType companion, CardFileType main) {
    switch (companion) {
        case VideoProxy:
            return main == Video;
        case VoiceNote:
            return main == Photo || main == Video || main == VideoProxy;
        case Sidecar:
            return main != Sidecar && main != Other;
        default:
            return false;
    }
}

/// The clip of a metadata file: "c0001" of "c0001m01", else empty.
std::string_view clipBase(std::string_view base) {
    constexpr std::size_t suffix = 3;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (base.size() <= suffix) return {};
    const auto tail = base.substr(base.size() - suffix);
    if (tail[0] != 'm' || !isDigit(tail[1]) || !isDigit(tail[2])) return {};
    return base.substr(0, base.size() - suffix);
}

/// Finds the files of one folder that companions belong to.
class Companions {
public:
    explicit Companions(std::span<const CardEntry> files) : files_(files), owners_(files.size()) {
        for (std::size_t i = 0; i < files.size(); ++i) {
            owners_[i] = i;
            if (files[i].error != 0 || files[i].type == Other || files[i].type == Sidecar) continue;
            const std::string name = lowerCased(files[i].name);
            named_[name].push_back(i);
            named_[std::string(nameParts(name).base)].push_back(i);
        }
        // In this order, so that nothing comes to belong to what is a companion itself.
        for (const CardFileType type : {VideoProxy, VoiceNote, Sidecar}) assign(type);
    }

    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// For each file the index of the file it belongs to: itself for a file in its own right,
    /// `none` for a sidecar alone.
    const std::vector<std::size_t>& owners() const { return owners_; }

private:
    void assign(CardFileType type) {
        for (std::size_t i = 0; i < files_.size(); ++i) {
            if (files_[i].type != type || files_[i].error != 0) continue;
            const std::size_t owner = ownerOf(files_[i]);
            if (owner != none || type == Sidecar) owners_[i] = owner;
        }
    }

    std::size_t ownerOf(const CardEntry& companion) const {
        const std::string name = lowerCased(companion.name);
        const auto [base, extension] = nameParts(name);
        const std::size_t owner = firstOwner(base, companion.type);
        if (owner != none || companion.type != Sidecar || extension != "xml") return owner;
        return firstOwner(clipBase(base), companion.type);
    }

    std::size_t firstOwner(std::string_view name, CardFileType companion) const {
        const auto found = named_.find(std::string(name));
        if (found == named_.end()) return none;
        const auto fits = [&](std::size_t i) { return canBelong(companion, files_[i].type); };
        const auto owner = std::ranges::find_if(
            found->second, [&](std::size_t i) { return owners_[i] == i && fits(i); });
        if (owner != found->second.end()) return *owner;
        if (companion != Sidecar) return none;
        // What it describes belongs to another file, and takes it along.
        const auto described = std::ranges::find_if(found->second, fits);
        return described == found->second.end() ? none : owners_[*described];
    }

    std::span<const CardEntry> files_;
    std::vector<std::size_t> owners_;
    /// Media files under their lower-cased name and under that without extension, in order.
    std::unordered_map<std::string, std::vector<std::size_t>> named_;
};

bool isCompanion(const CardEntry& file) {
    return file.type == VideoProxy || file.type == VoiceNote || file.type == Sidecar;
}

/// Counts what is left out.
void leaveOut(const std::string& name, OtherFiles& others) {
    if (isBookkeeping(name)) return;
    if (name.starts_with('.')) {
        ++others.hidden[name];
    } else {
        ++others.kinds[upperCased(nameParts(name).extension)];
    }
}

/// Those that are media, sidecars or could not be read, by name.
std::vector<CardEntry> sorted(std::vector<CardEntry> files, OtherFiles& others) {
    // Entries are large: each is moved once.
    std::vector<CardEntry*> order;
    order.reserve(files.size());
    for (CardEntry& file : files) {
        if (file.type != Other || file.error != 0) {
            order.push_back(&file);
        } else {
            leaveOut(file.name, others);
        }
    }
    std::ranges::sort(order, {}, [](const CardEntry* file) -> auto& { return file->name; });
    std::vector<CardEntry> found;
    found.reserve(order.size());
    for (CardEntry* file : order) found.push_back(std::move(*file));
    return found;
}

/// The files of the last folder, in order.
void appendFiles(std::vector<CardEntry> unsorted, CardCatalogue& catalogue) {
    auto& entries = catalogue.entries;
    const auto folder = static_cast<std::uint32_t>(catalogue.folders.size() - 1);
    auto files = sorted(std::move(unsorted), catalogue.others);
    for (CardEntry& file : files) file.folder = folder;
    if (std::ranges::none_of(files, isCompanion)) {
        std::ranges::move(files, std::back_inserter(entries));
        return;
    }
    const std::vector<std::size_t> owners = Companions(files).owners();
    std::vector<std::vector<std::size_t>> sidecars(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (owners[i] != i && owners[i] != Companions::none) sidecars[owners[i]].push_back(i);
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (owners[i] == Companions::none) leaveOut(files[i].name, catalogue.others);
        if (owners[i] != i) continue;
        files[i].sidecars = static_cast<std::uint32_t>(sidecars[i].size());
        entries.push_back(std::move(files[i]));
        for (const std::size_t sidecar : sidecars[i]) entries.push_back(std::move(files[sidecar]));
    }
}

}  // namespace

std::string CardCatalogue::path(const CardEntry& entry) const {
    const std::string& folder = folders[entry.folder];
    return folder.empty() ? entry.name : folder + "/" + entry.name;
}

CardCatalogue arrangeCatalogue(CardListing listing) {
    CardCatalogue catalogue;
    std::size_t count = 0;
    for (const auto& [folder, files] : listing) count += files.size();
    catalogue.entries.reserve(count);
    for (auto& [folder, files] : listing) {
        catalogue.folders.push_back(folder);
        appendFiles(std::move(files), catalogue);
    }
    return catalogue;
}

bool haveSameFiles(const CardCatalogue& one, const CardCatalogue& other) {
    const auto isSame = [&](const CardEntry& a, const CardEntry& b) {
        // What could not be read bears the time of the attempt.
        return a.name == b.name && one.folders[a.folder] == other.folders[b.folder] &&
               a.size == b.size && a.error == b.error && (a.error != 0 || a.modified == b.modified);
    };
    return std::ranges::equal(one.entries, other.entries, isSame);
}

void dateSidecars(CardCatalogue& catalogue) {
    auto& entries = catalogue.entries;
    for (std::size_t main = 0; main < entries.size(); main += 1 + entries[main].sidecars) {
        const auto date = entries[main].taken ? entries[main].taken : entries[main].modified;
        for (std::size_t i = 1; i <= entries[main].sidecars; ++i) entries[main + i].taken = date;
    }
}

}  // namespace bildkurier
