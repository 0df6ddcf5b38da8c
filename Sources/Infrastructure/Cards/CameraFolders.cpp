// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraFolders.h"

#include "LetterCase.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

constexpr auto onTop = std::to_array<std::string_view>(
    {"dcim", "avchd", "m4root", "bpav", "xdroot", "contents", "mp_root", "sd_video"});
constexpr std::string_view outer = "private";
constexpr auto inOuter = std::to_array<std::string_view>(
    {"avchd", "m4root", "bpav", "xdroot", "sd_video"});

/// The folders in `path`, links left out.
std::vector<fs::path> foldersIn(const fs::path& path) {
    std::vector<fs::path> folders;
    std::error_code error;
    for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
        std::error_code unknown;
        if (at->symlink_status(unknown).type() == fs::file_type::directory)
            folders.push_back(at->path());
    }
    return folders;
}

bool isAmong(const auto& names, const fs::path& folder) {
    return std::ranges::find(names, lowerCased(folder.filename().native())) != std::end(names);
}

}  // namespace

bool hasCameraFolders(const std::string& path) {
    const auto isIn = [](const auto& names) {
        return [&names](const fs::path& folder) { return isAmong(names, folder); };
    };
    return std::ranges::any_of(foldersIn(path), [&](const fs::path& folder) {
        return isAmong(onTop, folder) || (isAmong(std::array{outer}, folder) &&
                                          std::ranges::any_of(foldersIn(folder), isIn(inOuter)));
    });
}

}  // namespace bildkurier
