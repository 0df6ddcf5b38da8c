// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderOverlap.h"

#include <filesystem>
#include <system_error>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

fs::path resolved(const std::string& folder) {
    std::error_code error;
    auto path = fs::weakly_canonical(folder, error);
    return error ? fs::path(folder) : path;
}

/// Whether `inner`, or a folder above it, is `outer`, under whatever name.
bool isWithin(fs::path inner, const fs::path& outer) {
    for (;;) {
        std::error_code missing;
        if (inner == outer || fs::equivalent(inner, outer, missing)) return true;
        if (inner == inner.parent_path()) return false;
        inner = inner.parent_path();
    }
}

}  // namespace

bool foldersOverlap(const std::string& folder, const std::string& other) {
    const auto one = resolved(folder);
    const auto two = resolved(other);
    return isWithin(one, two) || isWithin(two, one);
}

}  // namespace bildkurier
