// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderOverlap.h"

#include "ResolvedPath.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

/// Whether `inner`, or a folder above it, is `outer`, under whatever name.
bool isWithin(fs::path inner, const fs::path& outer) {
    for (;;) {
        std::error_code missing;
        if (inner == outer || fs::equivalent(inner, outer, missing)) return true;
        if (inner == inner.parent_path()) return false;
        inner = inner.parent_path();
    }
}

/// A folder of a volume with all below it.
struct VolumePart {
    std::uint64_t device = 0;
    std::string path;

    bool shares(const VolumePart& other) const {
        return device == other.device && (liesIn(path, other.path) || liesIn(other.path, path));
    }
};

/// What is reached through `folder`: its own part of a volume, and those mounted below it.
std::vector<VolumePart> partsBelow(std::span<const Mount> table, std::string_view folder) {
    std::vector<VolumePart> parts;
    if (const auto mount = mountAbove(table, folder))
        parts.push_back({mount->device, pathInVolume(*mount, folder)});
    for (const Mount& mount : table) {
        if (mount.point != folder && liesIn(mount.point, folder))
            parts.push_back({mount.device, mount.root});
    }
    return parts;
}

}  // namespace

bool shareVolume(std::span<const Mount> table, std::string_view folder, std::string_view other) {
    const auto ones = partsBelow(table, folder);
    const auto others = partsBelow(table, other);
    return std::ranges::any_of(ones, [&](const VolumePart& one) {
        return std::ranges::any_of(others, [&](const auto& two) { return one.shares(two); });
    });
}

bool foldersOverlap(const std::string& folder, const std::string& other) {
    const fs::path one = resolvedPath(folder);
    const fs::path two = resolvedPath(other);
    return isWithin(one, two) || isWithin(two, one) ||
           shareVolume(readMountTable(), one.native(), two.native());
}

}  // namespace bildkurier
