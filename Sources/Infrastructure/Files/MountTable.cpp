// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountTable.h"

#include "ParsedNumber.h"
#include "SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ranges>
#include <system_error>

namespace bildkurier {

namespace {

bool isOctalDigit(char c) { return c >= '0' && c <= '7'; }

/// The kernel writes a space, tab, line feed or backslash as "\" and three octal digits.
std::string unescaped(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto digits = text.substr(1, 3);
        const bool escape =
            text.front() == '\\' && digits.size() == 3 && std::ranges::all_of(digits, isOctalDigit);
        plain += escape ? static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 +
                                            (digits[2] - '0'))
                        : text.front();
        text.remove_prefix(escape ? 4 : 1);
    }
    return plain;
}

std::optional<std::uint64_t> deviceNumber(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) return {};
    const auto major = parsedNumber<unsigned>(text.substr(0, colon));
    const auto minor = parsedNumber<unsigned>(text.substr(colon + 1));
    if (!major || !minor) return {};
    return makedev(*major, *minor);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (const auto part : std::views::split(text, separator))
        parts.emplace_back(part.begin(), part.end());
    return parts;
}

std::optional<Mount> parseMount(std::string_view line) {
    const auto fields = split(line, ' ');
    if (fields.size() < 6) return {};
    // Any number of optional fields stands between the sixth and the dash.
    const auto dash = std::ranges::find(fields.begin() + 6, fields.end(), "-");
    if (fields.end() - dash < 4) return {};
    const auto id = parsedNumber<int>(fields[0]);
    const auto device = deviceNumber(fields[2]);
    if (!id || !device) return {};
    return Mount{.id = *id,
                 .device = *device,
                 .root = unescaped(fields[3]),
                 .point = unescaped(fields[4]),
                 .options = unescaped(fields[5]) + "," + unescaped(dash[3]),
                 .type = unescaped(dash[1]),
                 .source = unescaped(dash[2])};
}

}  // namespace

std::vector<Mount> parseMountTable(std::string_view text) {
    std::vector<Mount> mounts;
    for (const auto line : split(text, '\n'))
        if (auto mount = parseMount(line)) mounts.push_back(*std::move(mount));
    return mounts;
}

std::vector<Mount> readMountTable() {
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    return parseMountTable(std::string(std::istreambuf_iterator<char>(table), {}));
}

std::optional<Mount> mountOf(const std::string& path) {
    struct statx found{};
    const auto look = [&] { return ::statx(AT_FDCWD, path.c_str(), 0, STATX_MNT_ID, &found); };
    if (retried(look) != 0) return {};
    const auto mounts = readMountTable();
    if (found.stx_mask & STATX_MNT_ID) {
        const auto mount = std::ranges::find(mounts, found.stx_mnt_id, [](const Mount& m) {
            return static_cast<std::uint64_t>(m.id);
        });
        if (mount != mounts.end()) return *mount;
    }
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    return error ? std::nullopt : mountAbove(mounts, real.native());
}

std::optional<std::uint64_t> mountNumber(const std::string& path) {
    constexpr unsigned unique = 0x4000;  // STATX_MNT_ID_UNIQUE, which older headers lack
    struct statx found{};
    const auto look = [&] { return ::statx(AT_FDCWD, path.c_str(), 0, unique, &found); };
    if (retried(look) != 0 || (found.stx_mask & unique) == 0) return std::nullopt;
    return found.stx_mnt_id;
}

std::optional<Mount> mountAbove(std::span<const Mount> mounts, std::string_view path) {
    std::optional<Mount> nearest;
    for (const auto& mount : mounts) {
        const bool nearer = !nearest || mount.point.size() >= nearest->point.size();
        if (nearer && liesIn(path, mount.point)) nearest = mount;
    }
    return nearest;
}

std::string pathInVolume(const Mount& mount, std::string_view path) {
    if (mount.point != "/") path.remove_prefix(mount.point.size());
    if (mount.root == "/") return std::string(path.empty() ? mount.root : path);
    return mount.root + std::string(path == "/" ? "" : path);
}

bool liesIn(std::string_view path, std::string_view folder) {
    if (folder == "/") return path.starts_with('/');
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool numbersFilesAnew(std::string_view type) {
    static constexpr auto types =
        std::to_array<std::string_view>({"cifs", "exfat", "msdos", "smb3", "vboxsf", "vfat"});
    static_assert(std::ranges::is_sorted(types));
    return type.starts_with("fuse") || std::ranges::binary_search(types, type);
}

bool isNetworkFileSystem(std::string_view type) {
    static constexpr std::string_view fuse = "fuse.";
    static constexpr auto types = std::to_array<std::string_view>(
        {"9p",         "acfs",      "afp",      "afpfs",       "afs",
         "auristorfs", "beegfs",    "ceph",     "ceph-fuse",   "cifs",
         "coda",       "curlftpfs", "davfs",    "davfs2",      "ftpfs",
         "gcsfuse",    "glusterfs", "goofys",   "gpfs",        "gvfs-fuse-daemon",
         "gvfsd-fuse", "juicefs",   "kio-fuse", "lustre",      "mfs",
         "ncp",        "ncpfs",     "nfs",      "nfs4",        "orangefs",
         "prl_fs",     "pvfs2",     "rclone",   "s3fs",        "smb",
         "smb2",       "smb3",      "smbfs",    "smbnetfs",    "sshfs",
         "vboxsf",     "virtiofs",  "vmhgfs",   "vmhgfs-fuse", "wdfs",
         "webdav",     "webdavfs"});
    static_assert(std::ranges::is_sorted(types));
    if (type.starts_with(fuse)) type.remove_prefix(fuse.size());
    return std::ranges::binary_search(types, type);
}

bool isNetworkMount(const Mount& mount) {
    return isNetworkFileSystem(mount.type) ||
           (mount.type == "fuse" && mount.source.find("://") != std::string::npos);
}

}  // namespace bildkurier
