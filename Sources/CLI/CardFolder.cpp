// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFolder.h"

#include "ImageCaptureCamera.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace bildkurier {

namespace {

std::filesystem::path resolved(const std::string& folder) {
    std::error_code error;
    auto path = std::filesystem::weakly_canonical(folder, error);
    return error ? std::filesystem::path(folder) : path;
}

bool liesIn(const std::filesystem::path& inner, const std::filesystem::path& outer) {
    return std::ranges::mismatch(outer, inner).in1 == outer.end();
}

}  // namespace

std::optional<std::string> cardFolder(const Camera& camera) {
    const auto* device = dynamic_cast<const ImageCaptureCamera*>(&camera);
    return device == nullptr ? std::nullopt : device->device()->facts().folder;
}

bool overlaps(const std::string& folder, const std::string& other) {
    const auto one = resolved(folder);
    const auto two = resolved(other);
    return liesIn(one, two) || liesIn(two, one);
}

}  // namespace bildkurier
