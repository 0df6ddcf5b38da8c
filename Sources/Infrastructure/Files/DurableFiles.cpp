// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DurableFiles.h"

#include "FileDescriptor.h"
#include "HiddenCopies.h"
#include "SameTime.h"
#include "SystemCall.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <expected>
#include <filesystem>
#include <span>
#include <vector>

namespace bildkurier {

namespace {

/// An item by its name in an open folder; the folder may also be AT_FDCWD.
struct Place {
    int folder;
    std::string name;

    const char* chars() const { return name.c_str(); }
};

/// What a call did that answers 0 or -1: 0 or errno.
template <class Call>
int outcome(Call call) {
    return retried(call) == 0 ? 0 : errno;
}

/// Whether an error only says that the file system does not have this call.
bool isUnsupported(int error) { return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP; }

/// Whether an error of linkat(2) says that a file cannot have two names here, or not this file.
bool cannotLink(int error) { return isUnsupported(error) || error == EPERM || error == EMLINK; }

FileDescriptor opened(const Place& place, int flags, mode_t mode = 0) {
    const auto open = [&] {
        return ::openat(place.folder, place.chars(), flags | O_CLOEXEC, mode);
    };
    return FileDescriptor(retried(open));
}

int flush(const FileDescriptor& file) {
    return outcome([&] { return ::fsync(file.get()); });
}

/// Makes the names in a folder durable, where the file system can do that on request.
int flushFolder(const FileDescriptor& folder) {
    const int error = flush(folder);
    return isUnsupported(error) ? 0 : error;
}

std::string folderAbove(const std::string& path) {
    const std::string above = std::filesystem::path(path).parent_path().string();
    return above.empty() ? "." : above;
}

std::string lastName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

/// To flush it or, with O_PATH, only to find what is in it.
FileDescriptor openedFolder(const std::string& path, int flags = O_RDONLY) {
    return opened({AT_FDCWD, path}, flags | O_DIRECTORY);
}

int look(const FileDescriptor& file, struct stat& facts) {
    return outcome([&] { return ::fstat(file.get(), &facts); });
}

int look(const Place& place, int flags, struct stat& facts) {
    return outcome([&] { return ::fstatat(place.folder, place.chars(), &facts, flags); });
}

/// 0, EEXIST for anything but a folder or a link to one, or why this cannot be known.
int lookForFolder(const std::string& path) {
    struct stat facts{};
    const int error = look({AT_FDCWD, path}, 0, facts);
    return error == 0 && !S_ISDIR(facts.st_mode) ? EEXIST : error;
}

/// 0 where nothing has that name.
int refuseTaken(const Place& place) {
    struct stat facts{};
    const int error = look(place, AT_SYMLINK_NOFOLLOW, facts);
    if (error == 0) return EEXIST;
    return error == ENOENT ? 0 : error;
}

int remove(const Place& place) {
    return outcome([&] { return ::unlinkat(place.folder, place.chars(), 0); });
}

/// A file whose contents are durable. It is held by O_PATH: some volumes give a file another
/// number once nobody does, and some servers do not rename what is open.
struct FlushedFile {
    FileDescriptor held;
    std::int64_t size;
};

/// 0 if this is that file, still as large, ESTALE if not.
int recognise(const struct stat& facts, const FlushedFile& file) {
    struct stat now{};
    if (const int error = look(file.held, now)) return error;
    const bool same = facts.st_dev == now.st_dev && facts.st_ino == now.st_ino;
    return same && facts.st_size == file.size ? 0 : ESTALE;
}

int recognise(const Place& place, const FlushedFile& file) {
    struct stat facts{};
    const int error = look(place, AT_SYMLINK_NOFOLLOW, facts);
    return error == 0 ? recognise(facts, file) : error;
}

/// Makes the contents of a regular file durable that still has this name afterwards.
std::expected<FlushedFile, int> flushedFile(const Place& place) {
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK;
    // Network file systems may leave out the server when a file is only open for reading.
    FileDescriptor file = opened(place, O_RDWR | flags);
    if (!file) file = opened(place, O_RDONLY | flags);
    struct stat facts{};
    if (!file) return std::unexpected(errno);
    if (const int error = look(file, facts)) return std::unexpected(error);
    if (S_ISDIR(facts.st_mode)) return std::unexpected(EISDIR);
    if (!S_ISREG(facts.st_mode)) return std::unexpected(EINVAL);
    if (const int error = flush(file)) return std::unexpected(error);
    FlushedFile flushed{opened(place, O_PATH | O_NOFOLLOW), facts.st_size};
    if (!flushed.held) return std::unexpected(errno);
    if (const int error = look(file, facts)) return std::unexpected(error);
    if (const int error = recognise(facts, flushed)) return std::unexpected(error);
    if (const int error = file.close()) return std::unexpected(error);
    return flushed;
}

int renameWith(unsigned flags, const Place& from, const Place& to) {
    return outcome(
        [&] { return ::renameat2(from.folder, from.chars(), to.folder, to.chars(), flags); });
}

int link(const Place& from, const Place& to) {
    return outcome([&] { return ::linkat(from.folder, from.chars(), to.folder, to.chars(), 0); });
}

/// Renames within a volume, never onto a name that is taken.
int rename(const Place& from, const Place& to) {
    int error = renameWith(RENAME_NOREPLACE, from, to);
    if (!isUnsupported(error)) return error;
    error = link(from, to);
    if (error == 0) remove(from);
    if (!cannotLink(error)) return error;
    // Without links either, as on exFAT: a moment passes between looking and renaming.
    error = refuseTaken(to);
    return error == 0 ? renameWith(0, from, to) : error;
}

int copyContents(const FileDescriptor& from, const FileDescriptor& to, std::int64_t size) {
    std::vector<char> buffer(std::size_t{1} << 20);
    for (std::int64_t copied = 0;;) {
        const auto count =
            retried([&] { return ::read(from.get(), buffer.data(), buffer.size()); });
        if (count < 0) return errno;
        if (count == 0) return copied == size ? 0 : EIO;
        copied += count;
        const std::span read(buffer.data(), static_cast<std::size_t>(count));
        if (const int error = writeAll(to, read)) return error;
    }
}

/// Fills the empty file `target` with what `source` holds, its time too, and closes it.
int fill(FileDescriptor& target, const FileDescriptor& source, const struct stat& facts) {
    if (const int error = copyContents(source, target, facts.st_size)) return error;
    struct stat now{};
    if (const int error = look(source, now)) return error;
    if (now.st_size != facts.st_size || !isSameTime(now.st_mtim, facts.st_mtim)) return ESTALE;
    // Not every file system can keep it.
    ::futimens(target.get(), std::array{facts.st_atim, facts.st_mtim}.data());
    if (const int error = flush(target)) return error;
    return target.close();
}

/// Copies a file to a volume other than its own.
int copy(const FlushedFile& file, const Place& from, const Place& to) {
    const FileDescriptor source = opened(from, O_RDONLY | O_NOFOLLOW);
    if (!source) return errno;
    struct stat facts{};
    if (const int error = look(source, facts)) return error;
    if (const int error = recognise(facts, file)) return error;
    removeAbandonedCopies(to.folder);
    const Place hidden{to.folder, hiddenCopyName()};
    FileDescriptor target =
        opened(hidden, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, facts.st_mode & 0777);
    if (!target) return errno;
    lockHiddenCopy(target);
    int error = fill(target, source, facts);
    if (error == 0) error = rename(hidden, to);
    if (error != 0) remove(hidden);
    return error;
}

/// Renames within a volume. A name that turns out to have gone to another file, put in place of
/// this one at the last moment, is taken back.
int rename(const FlushedFile& file, const Place& from, const Place& to) {
    if (const int error = rename(from, to)) return error;
    const int error = recognise(to, file);
    if (error != 0 && rename(to, from) != 0) remove(to);
    return error;
}

/// Makes the name of a folder durable, which may have been there before: its maker may have ended
/// too early. Where this user may write above but not read, nothing less than the volume can be
/// flushed. Where neither, that is left to who may.
int flushName(const std::string& path, const std::string& above) {
    const FileDescriptor folder = openedFolder(above);
    if (folder) return flushFolder(folder);
    if (errno != EACCES) return errno;
    if (::faccessat(AT_FDCWD, above.c_str(), W_OK, AT_EACCESS) != 0) return 0;
    const FileDescriptor inVolume = openedFolder(path);
    if (!inVolume) return errno == EACCES ? 0 : errno;
    return outcome([&] { return ::syncfs(inVolume.get()); });
}

int makeOneFolder(const std::string& path, const std::string& above) {
    const int error = outcome([&] { return ::mkdirat(AT_FDCWD, path.c_str(), 0777); });
    if (error != 0 && lookForFolder(path) != 0) return error;
    return flushName(path, above);
}

}  // namespace

int makeFolder(const std::string& path) {
    const std::string above = folderAbove(path);
    const int found = lookForFolder(path);
    if (found == 0) return flushName(path, above);
    if (found != ENOENT) return found;
    const int error = above.size() < path.size() ? makeFolder(above) : 0;
    return error == 0 ? makeOneFolder(path, above) : error;
}

int moveFile(const std::string& source, const std::string& target) {
    // All names are looked up in the folders as they are now: one that is removed and made anew
    // meanwhile is another.
    const FileDescriptor fromFolder = openedFolder(folderAbove(source), O_PATH);
    if (!fromFolder) return errno;
    const FileDescriptor toFolder = openedFolder(folderAbove(target));
    if (!toFolder) return errno;
    const Place from{fromFolder.get(), lastName(source)};
    const Place to{toFolder.get(), lastName(target)};
    if (const int error = refuseTaken(to)) return error;
    const auto file = flushedFile(from);
    if (!file) return file.error();
    int error = rename(*file, from, to);
    const bool acrossVolumes = error == EXDEV;
    if (acrossVolumes) error = copy(*file, from, to);
    if (error == 0) error = flushFolder(toFolder);
    if (error == 0 && acrossVolumes) remove(from);
    return error;
}

}  // namespace bildkurier
