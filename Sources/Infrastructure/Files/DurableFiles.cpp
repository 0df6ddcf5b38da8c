// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DurableFiles.h"

#include "FileDescriptor.h"
#include "SystemCall.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <vector>

namespace bildkurier {

namespace {

/// An item by its name in an open folder; the folder may also be AT_FDCWD.
struct Place {
    int folder;
    std::string name;

    const char* chars() const { return name.c_str(); }
};

/// What a call that answers 0 or -1 did: 0 or errno.
int outcome(int answer) { return answer == 0 ? 0 : errno; }

/// Whether an error only says that the file system does not have this call.
bool isUnsupported(int error) { return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP; }

FileDescriptor opened(const Place& place, int flags, mode_t mode = 0) {
    const auto open = [&] {
        return ::openat(place.folder, place.chars(), flags | O_CLOEXEC, mode);
    };
    return FileDescriptor(retried(open));
}

int flush(const FileDescriptor& file) {
    return outcome(retried([&] { return ::fsync(file.get()); }));
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

FileDescriptor openedFolder(const std::string& path) {
    return opened({AT_FDCWD, path}, O_RDONLY | O_DIRECTORY);
}

bool isFolder(const std::string& path) {
    struct stat found{};
    return ::stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

/// 0 where nothing has that name.
int refuseTaken(const Place& place) {
    struct stat found{};
    if (::fstatat(place.folder, place.chars(), &found, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    return errno == ENOENT ? 0 : errno;
}

/// Makes the contents of a regular file durable.
int flushFile(const std::string& path) {
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK;
    // Network file systems may leave out the server when a file is only open for reading.
    FileDescriptor file = opened({AT_FDCWD, path}, O_RDWR | flags);
    if (!file) file = opened({AT_FDCWD, path}, O_RDONLY | flags);
    struct stat found{};
    if (!file || ::fstat(file.get(), &found) != 0) return errno;
    if (S_ISDIR(found.st_mode)) return EISDIR;
    if (!S_ISREG(found.st_mode)) return EINVAL;
    if (const int error = flush(file)) return error;
    return file.close();
}

/// Renames within a volume, never onto a name that is taken.
int rename(const Place& from, const Place& to) {
    if (::renameat2(from.folder, from.chars(), to.folder, to.chars(), RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnsupported(errno)) return errno;
    if (::linkat(from.folder, from.chars(), to.folder, to.chars(), 0) == 0) {
        ::unlinkat(from.folder, from.chars(), 0);
        return 0;
    }
    if (errno == EEXIST) return EEXIST;
    // Without links either, as on exFAT: a moment passes between looking and renaming.
    if (const int error = refuseTaken(to)) return error;
    return outcome(::renameat(from.folder, from.chars(), to.folder, to.chars()));
}

int copyContents(const FileDescriptor& from, const FileDescriptor& to) {
    std::vector<std::byte> buffer(std::size_t{1} << 20);
    while (true) {
        const auto length =
            retried([&] { return ::read(from.get(), buffer.data(), buffer.size()); });
        if (length < 0) return errno;
        if (length == 0) return 0;
        for (ssize_t written = 0; written < length;) {
            const auto count = retried([&] {
                return ::write(to.get(), buffer.data() + written,
                               static_cast<std::size_t>(length - written));
            });
            if (count < 0) return errno;
            written += count;
        }
    }
}

std::string hiddenName() {
    std::random_device random;
    return fmt::format(".bildkurier-{:08x}{:08x}", random(), random());
}

/// Fills the empty file `copy` with what `source` holds, its time too, and closes it.
int fill(FileDescriptor& copy, const FileDescriptor& source, const struct stat& facts) {
    if (const int error = copyContents(source, copy)) return error;
    // Not every file system can keep it.
    ::futimens(copy.get(), std::array{facts.st_atim, facts.st_mtim}.data());
    if (const int error = flush(copy)) return error;
    return copy.close();
}

/// Copies a file to a volume other than its own.
int copyTo(const Place& target, const std::string& path) {
    const FileDescriptor source = opened({AT_FDCWD, path}, O_RDONLY | O_NOFOLLOW);
    struct stat facts{};
    if (!source || ::fstat(source.get(), &facts) != 0) return errno;
    const Place hidden{target.folder, hiddenName()};
    FileDescriptor copy =
        opened(hidden, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, facts.st_mode & 0777);
    if (!copy) return errno;
    int error = fill(copy, source, facts);
    if (error == 0) error = rename(hidden, target);
    if (error != 0) ::unlinkat(hidden.folder, hidden.chars(), 0);
    return error;
}

}  // namespace

int makeFolder(const std::string& path) {
    const std::string above = folderAbove(path);
    const auto make = [&] { return outcome(::mkdir(path.c_str(), 0777)); };
    int error = make();
    if (error == ENOENT && above.size() < path.size()) {
        error = makeFolder(above);
        if (error == 0) error = make();
    }
    if (error != 0) return isFolder(path) ? 0 : error;
    const FileDescriptor folder = openedFolder(above);
    return folder ? flushFolder(folder) : errno;
}

int moveFile(const std::string& source, const std::string& target) {
    const FileDescriptor folder = openedFolder(folderAbove(target));
    if (!folder) return errno;
    const Place from{AT_FDCWD, source};
    const Place to{folder.get(), std::filesystem::path(target).filename().string()};
    if (const int error = refuseTaken(to)) return error;
    if (const int error = flushFile(source)) return error;
    int error = rename(from, to);
    const bool acrossVolumes = error == EXDEV;
    if (acrossVolumes) error = copyTo(to, source);
    if (error == 0) error = flushFolder(folder);
    if (error == 0 && acrossVolumes) ::unlink(source.c_str());
    return error;
}

}  // namespace bildkurier
