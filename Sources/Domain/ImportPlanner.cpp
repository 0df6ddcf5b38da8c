// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportPlanner.h"

namespace bildkurier {

std::vector<std::size_t> missingIndices(std::span<const ImportCandidate> candidates,
                                        const FileKeys& existing, std::optional<Date> since) {
    std::vector<std::size_t> missing;
    FileKeys selected;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& [name, size, shotDate] = candidates[i];
        if (!name) continue;
        if (since && shotDate.value_or(Date::min()) < *since) continue;
        std::string key = fileKey(*name, size);
        if (existing.contains(key)) continue;
        if (selected.insert(std::move(key)).second) missing.push_back(i);
    }
    return missing;
}

}  // namespace bildkurier
