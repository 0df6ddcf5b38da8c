// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MarkedFolder.h"

#include "MountTable.h"
#include "SystemCall.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>

namespace bildkurier {

namespace {

std::string pathOf(const FileDescriptor& folder) {
    return fmt::format("/proc/self/fd/{}", folder.get());
}

std::optional<FolderMark> foundMark(const FileDescriptor& folder) {
    struct stat found{};
    if (::fstat(folder.get(), &found) != 0) return {};
    return FolderMark{
        .device = found.st_dev, .folder = found.st_ino, .mount = mountNumber(pathOf(folder))};
}

/// 0, or why `found` is not the folder that bears `mark`, as errno.
int difference(const FolderMark& mark, const FolderMark& found) {
    const bool isOtherMount = mark.mount && found.mount != mark.mount;
    if (isOtherMount || found.device != mark.device) return ENODEV;
    return mark.folder != 0 && found.folder != mark.folder ? ESTALE : 0;
}

}  // namespace

std::optional<FolderMark> markOf(const FileDescriptor& folder) {
    auto mark = foundMark(folder);
    const auto mount = mountOf(pathOf(folder));
    if (mark && (!mount || numbersFilesAnew(mount->type))) mark->folder = 0;
    return mark;
}

FileDescriptor openFolder(const std::string& path, int flags,
                          const std::optional<FolderMark>& mark) {
    FileDescriptor folder(
        retried([&] { return ::open(path.c_str(), flags | O_DIRECTORY | O_CLOEXEC); }));
    if (!folder || !mark) return folder;
    const auto found = foundMark(folder);
    const int error = found ? difference(*mark, *found) : errno;
    if (error == 0) return folder;
    folder.close();
    errno = error;
    return {};
}

}  // namespace bildkurier
