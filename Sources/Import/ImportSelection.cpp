// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportSelection.h"

#include "ByteSum.h"

#include <algorithm>
#include <utility>

namespace bildkurier {

CameraFiles sortedByShotDate(CameraFiles files) {
    std::vector<std::pair<Date, std::shared_ptr<CameraFile>>> dated;
    dated.reserve(files.size());
    for (auto& file : files) {
        const Date shot = file->shotDate().value_or(Date::min());
        dated.emplace_back(shot, std::move(file));
    }
    std::ranges::stable_sort(dated, {}, [](const auto& entry) { return entry.first; });
    std::ranges::transform(dated, files.begin(),
                           [](auto& entry) { return std::move(entry.second); });
    return files;
}

std::vector<ImportCandidate> candidates(std::span<const std::shared_ptr<CameraFile>> files) {
    std::vector<ImportCandidate> found;
    found.reserve(files.size());
    for (const auto& file : files) found.push_back(file->candidate());
    return found;
}

ImportSelection selectFiles(std::span<const std::shared_ptr<CameraFile>> catalogue,
                            std::span<const ImportCandidate> candidates,
                            std::span<const std::size_t> positions) {
    ImportSelection selection;
    std::vector<TypeSummary::File> rows;
    selection.files.reserve(positions.size());
    rows.reserve(positions.size());
    for (const std::size_t position : positions) {
        const ImportCandidate& candidate = candidates[position];
        selection.files.push_back(catalogue[position]);
        selection.bytes = byteSum(selection.bytes, candidate.size);
        rows.push_back({candidate.name, candidate.size});
    }
    selection.byType = TypeSummary::summarize(rows);
    return selection;
}

}  // namespace bildkurier
