// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "ImportCandidate.h"
#include "TypeSummary.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace bildkurier {

using CameraFiles = std::vector<std::shared_ptr<CameraFile>>;

/// Files chosen from a catalogue, in its order.
struct ImportSelection {
    CameraFiles files;
    std::int64_t bytes = 0;  ///< sum of their sizes
    std::vector<TypeSummary> byType;
};

/// `files` by shot date, those without one first; files of one moment keep their order.
CameraFiles sortedByShotDate(CameraFiles files);

/// The files as the planner sees them, one by one.
std::vector<ImportCandidate> candidates(std::span<const std::shared_ptr<CameraFile>> files);

/// The files of a catalogue at these positions; `candidates` are those of the catalogue.
ImportSelection selectFiles(std::span<const std::shared_ptr<CameraFile>> catalogue,
                            std::span<const ImportCandidate> candidates,
                            std::span<const std::size_t> positions);

}  // namespace bildkurier
