// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "FileKey.h"
#include "TypeSummary.h"

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
};

/// `files` by shot date, those without one first; files of one moment keep their order.
CameraFiles sortedByShotDate(CameraFiles files);

/// The files of a catalogue that the destination lacks, with `since` only those shot from
/// then on.
ImportSelection missingFiles(std::span<const std::shared_ptr<CameraFile>> catalogue,
                             const FileKeys& existing, std::optional<Date> since);

std::vector<TypeSummary> summarizeByType(std::span<const std::shared_ptr<CameraFile>> files);

}  // namespace bildkurier
