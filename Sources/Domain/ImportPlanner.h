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

/// Positions, ascending, of the candidates that still have to be imported: those with a name
/// whose key is neither in `existing` nor borne by an earlier candidate. With `since`, only
/// those shot at or after it; a candidate without shot date counts as older than any day.
std::vector<std::size_t> missingIndices(std::span<const ImportCandidate> candidates,
                                        const FileKeys& existing, std::optional<Date> since);

}  // namespace bildkurier
