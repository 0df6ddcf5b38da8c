// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportPlanner.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace bildkurier {

ImportPlanner::ImportPlanner(std::span<const ImportCandidate> candidates,
                             const FileKeys& existing) {
    std::unordered_map<std::string, std::size_t> numbers;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& [name, size, shotDate, isObstructed] = candidates[i];
        if (!name) continue;
        std::size_t number = keys_;
        if (!isObstructed) {
            std::string key = fileKey(*name, size);
            if (existing.contains(key)) continue;
            number = numbers.try_emplace(std::move(key), keys_).first->second;
        }
        keys_ = std::max(keys_, number + 1);
        rows_.push_back({.position = i, .key = number, .shot = shotDate.value_or(Date::min())});
    }
}

std::vector<std::size_t> ImportPlanner::missing(std::optional<Date> since) const {
    std::vector<std::size_t> positions;
    std::vector<bool> selected(keys_);
    for (const Row& row : rows_) {
        if ((since && row.shot < *since) || selected[row.key]) continue;
        selected[row.key] = true;
        positions.push_back(row.position);
    }
    return positions;
}

std::vector<std::size_t> missingIndices(std::span<const ImportCandidate> candidates,
                                        const FileKeys& existing, std::optional<Date> since) {
    return ImportPlanner(candidates, existing).missing(since);
}

}  // namespace bildkurier
