// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "FileKey.h"
#include "ImportCandidate.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace bildkurier {

/// Knows which candidates still have to be imported: those with a name whose key is neither in
/// `existing` nor borne by an earlier candidate, and those that are obstructed. To make one takes
/// long where there are many files; to ask it takes little.
class ImportPlanner {
public:
    /// Of no candidates.
    ImportPlanner() = default;
    ImportPlanner(std::span<const ImportCandidate> candidates, const FileKeys& existing);

    /// Their positions, ascending. With `since`, only those shot at or after it count; a
    /// candidate without shot date counts as older than any day.
    std::vector<std::size_t> missing(std::optional<Date> since) const;

private:
    struct Row {
        std::size_t position;
        std::size_t key;  ///< equal for copies of one file, below `keys_`
        Date shot;
    };

    std::vector<Row> rows_;  ///< of all that `existing` lacks
    std::size_t keys_ = 0;
};

/// What a planner of these candidates answers.
std::vector<std::size_t> missingIndices(std::span<const ImportCandidate> candidates,
                                        const FileKeys& existing, std::optional<Date> since);

}  // namespace bildkurier
