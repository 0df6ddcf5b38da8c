// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ContentReader.h"
#include "MemoryFileStore.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// Reads what is in a file store in memory; files of servers are copied into its staging folder.
class MemoryContentReader final : public ContentReader {
public:
    explicit MemoryContentReader(std::shared_ptr<MemoryFileStore> store)
        : store_(std::move(store)) {}

    std::optional<Error> refusal;      ///< of every listing
    std::set<std::string> unreadable;  ///< paths
    std::vector<std::string> unreadableFolders;
    std::function<std::vector<std::string>(const Url&, const std::optional<Url>&)> onCautions =
        [](const auto&, const auto&) { return std::vector<std::string>(); };
    int comparisons = 0;
    int fetches = 0;             ///< that copied something
    std::size_t copied = 0;      ///< files
    std::size_t mostCopies = 0;  ///< in the staging folder at a time
    std::function<void()> onListing = [] {};
    std::function<void()> onCopied = [] {};
    std::function<void()> onStep = [] {};

    Result<Listing> files(const Url& folder) override {
        onListing();
        if (refusal) return std::unexpected(*refusal);
        Listing found{.files = {}, .unreadable = unreadableFolders};
        for (const auto& [path, contents] : store_->files) {
            const std::string above = folder.path + "/";
            if (!path.starts_with(above) || path.find("/.", above.size() - 1) != std::string::npos)
                continue;
            found.files.push_back({.place = {.folder = folder, .path = path.substr(above.size())},
                                   .size = std::ssize(contents)});
        }
        return found;
    }

    std::vector<std::string> cautions(const Url& folder, const std::optional<Url>& card) override {
        return onCautions(folder, card);
    }

    std::vector<Result<PlacedFile>> fetch(std::span<const File> files, const Url& staging,
                                          const std::string& prefix) override {
        std::vector<Result<PlacedFile>> places;
        if (!files.front().place.folder.isFile()) ++fetches;
        for (const File& file : files) {
            if (file.place.folder.isFile()) {
                places.emplace_back(file.place);
            } else if (unreadable.contains(pathOf(file.place))) {
                places.emplace_back(failure("am Ziel nicht lesbar"));
            } else {
                const PlacedFile copy{.folder = staging,
                                      .path = prefix + std::to_string(places.size())};
                store_->files[pathOf(copy)] = store_->files.at(pathOf(file.place));
                places.emplace_back(copy);
                ++copied;
                onCopied();
            }
        }
        mostCopies = std::max(mostCopies, store_->tree(staging).size());
        return places;
    }

    Result<bool> haveSameContent(const PlacedFile& one, const PlacedFile& other, std::int64_t size,
                                 const Step& step) override {
        ++comparisons;
        for (const auto& place : {one, other}) {
            if (unreadable.contains(pathOf(place)) || !store_->files.contains(pathOf(place)))
                return failure(place.path + " nicht lesbar");
        }
        const std::string& contents = store_->files.at(pathOf(one));
        if (!step(size)) return failure("angehalten");
        onStep();
        return std::ssize(contents) == size && contents == store_->files.at(pathOf(other));
    }

private:
    static std::string pathOf(const PlacedFile& place) {
        return place.folder.appending(place.path).path;
    }

    std::shared_ptr<MemoryFileStore> store_;
};

}  // namespace bildkurier
