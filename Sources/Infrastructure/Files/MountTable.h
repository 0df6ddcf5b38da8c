// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// One line of the kernel's mount table (proc(5), /proc/[pid]/mountinfo), escapes decoded.
struct Mount {
    int id = 0;                ///< reused at once by the kernel
    std::uint64_t device = 0;  ///< st_dev of its files
    std::string root;          ///< the folder of the volume that is mounted
    std::string point;
    std::string options;  ///< of the mount and of its file system, comma-separated
    std::string type;     ///< file system, "fuse.sshfs"
    std::string source;   ///< "/dev/sdb1", "server:/share"

    bool operator==(const Mount&) const = default;
};

/// Lines that are not understood are left out.
std::vector<Mount> parseMountTable(std::string_view text);

/// The mounts of this process now; empty when the table cannot be read.
std::vector<Mount> readMountTable();

/// The mount on which `path` lies; absent when nothing is there.
std::optional<Mount> mountOf(const std::string& path);

/// The number of the mount on which `path` lies, which the kernel gives to no other mount. Absent
/// where nothing is there, or the kernel (before 6.8) has no such numbers.
std::optional<std::uint64_t> mountNumber(const std::string& path);

/// The mount whose point is nearest above `path`, an absolute path without links; the last
/// one mounted where several share that point.
std::optional<Mount> mountAbove(std::span<const Mount> mounts, std::string_view path);

/// Where in its volume `path` lies, an absolute path without links on `mount`: the same wherever
/// that volume, or a part of it, is mounted.
std::string pathInVolume(const Mount& mount, std::string_view path);

/// Whether `path` is `folder` or something below it; both absolute paths without links.
bool liesIn(std::string_view path, std::string_view folder);

/// Whether a file on this type of file system may get another number (st_ino) while it is mounted.
bool numbersFilesAnew(std::string_view type);

/// Whether files on this type of file system come from another computer: NFS, SMB, sshfs,
/// WebDAV, the shares of a virtual machine's host and the like.
bool isNetworkFileSystem(std::string_view type);

/// The same of a mount: some name no type but "fuse", and the server's URL as their source.
bool isNetworkMount(const Mount& mount);

}  // namespace bildkurier
