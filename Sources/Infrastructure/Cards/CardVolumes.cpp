// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardVolumes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace bildkurier {

namespace {

constexpr auto systemFolders =
    std::to_array<std::string_view>({"/", "/home", "/opt", "/root", "/run", "/srv", "/tmp"});
constexpr auto systemTrees = std::to_array<std::string_view>(
    {"/boot", "/dev", "/efi", "/etc", "/gnu", "/lib", "/nix", "/ostree", "/proc", "/snap", "/sys",
     "/sysroot", "/usr", "/var"});

/// "/home/anna", where a system may keep each home on a volume of its own.
bool isHome(std::string_view point) {
    constexpr std::string_view homes = "/home/";
    return point.starts_with(homes) && !point.substr(homes.size()).contains('/');
}

bool isSystemPoint(std::string_view point) {
    return std::ranges::find(systemFolders, point) != systemFolders.end() || isHome(point) ||
           std::ranges::any_of(systemTrees,
                               [point](std::string_view tree) { return liesIn(point, tree); });
}

bool isOnDevice(const Mount& mount) {
    return mount.source.starts_with("/dev/") && mount.source != "/dev/fuse" &&
           !isNetworkFileSystem(mount.type);
}

}  // namespace

std::vector<Mount> cardVolumes(std::span<const Mount> table) {
    const auto isSystem = [table](const Mount& mount) {
        return std::ranges::any_of(table, [&mount](const Mount& other) {
            return other.device == mount.device && isSystemPoint(other.point);
        });
    };
    const auto isHidden = [table](const Mount& mount) {
        const auto last =
            std::ranges::find(table.rbegin(), table.rend(), mount.point, &Mount::point);
        return &*last != &mount;
    };
    std::vector<Mount> volumes;
    for (const Mount& mount : table) {
        if (isOnDevice(mount) && !isSystem(mount) && !isHidden(mount)) volumes.push_back(mount);
    }
    return volumes;
}

}  // namespace bildkurier
