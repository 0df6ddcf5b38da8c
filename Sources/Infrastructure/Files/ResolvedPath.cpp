// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ResolvedPath.h"

#include <filesystem>
#include <system_error>

namespace bildkurier {

std::string resolvedPath(const std::string& path) {
    std::error_code error;
    auto found = std::filesystem::weakly_canonical(path, error);
    if (error) found = path;
    return (found.has_filename() ? found : found.parent_path()).string();
}

}  // namespace bildkurier
