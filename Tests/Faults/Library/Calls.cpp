// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// The functions of the C library through which a program touches a file system, as seen by a
// program that this library is preloaded into. They have other names here, so that they need
// not agree with the headers in every attribute; the linker sees the real ones.
#include "Next.h"
#include "Perform.h"
#include "Touch.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <vector>

// Defines the function `name`; real_name() is what lies below it.
#define INTERPOSE(Result, name, ...)                                                            \
    static constinit Next<Result(__VA_ARGS__)> real_##name(#name);                              \
    extern "C" [[gnu::visibility("default")]] Result interposed_##name(__VA_ARGS__) asm(#name); \
    Result interposed_##name(__VA_ARGS__)

// Gives a function a second name: where a file size has 64 bits anyway, both are one.
#define ALSO_KNOWN_AS(name, other)                               \
    extern "C" [[gnu::visibility("default"), gnu::alias(#name)]] \
    decltype(interposed_##name) interposed_##other asm(#other);

namespace bildkurier::faults {
namespace {

bool creates(int flags) { return (flags & (O_CREAT | __O_TMPFILE)) != 0; }

template <class Type>
const Type* address(long argument) {
    return reinterpret_cast<const Type*>(argument);  // NOLINT(performance-no-int-to-ptr)
}

/// The first `bytes` bytes of what `parts` say.
std::vector<iovec> beginning(const iovec* parts, int count, std::size_t bytes) {
    std::vector<iovec> cut;
    for (int i = 0; i < count && bytes > 0; ++i) {
        cut.push_back({parts[i].iov_base, std::min(parts[i].iov_len, bytes)});
        bytes -= cut.back().iov_len;
    }
    return cut;
}

std::size_t size(const iovec* parts, int count) {
    std::size_t sum = 0;
    for (int i = 0; i < count; ++i) sum += parts[i].iov_len;
    return sum;
}

}  // namespace

// Opening and closing. An optional mode is passed like a named one, whatever it is worth.

INTERPOSE(int, open, const char* path, int flags, mode_t mode) {
    return perform(Touch("open", AT_FDCWD, path).needingSpace(creates(flags)),
                   [=] { return real_open(path, flags, mode); });
}
ALSO_KNOWN_AS(open, open64)

INTERPOSE(int, openat, int folder, const char* path, int flags, mode_t mode) {
    return perform(Touch("openat", folder, path).needingSpace(creates(flags)),
                   [=] { return real_openat(folder, path, flags, mode); });
}
ALSO_KNOWN_AS(openat, openat64)

INTERPOSE(int, creat, const char* path, mode_t mode) {
    return perform(Touch("creat", AT_FDCWD, path).needingSpace(),
                   [=] { return real_creat(path, mode); });
}
ALSO_KNOWN_AS(creat, creat64)

INTERPOSE(int, close, int descriptor) {
    // One that only stands for a path has nothing to write that closing it could fail to.
    const int flags = ::fcntl(descriptor, F_GETFL);
    if (flags >= 0 && (flags & O_PATH) != 0) return real_close(descriptor);
    return perform(
        Touch("close", descriptor).needingSpace(), [=] { return real_close(descriptor); },
        [=] { real_close(descriptor); });
}

// Reading, writing, flushing.

INTERPOSE(ssize_t, read, int descriptor, void* bytes, std::size_t count) {
    return perform(Touch("read", descriptor), [=] { return real_read(descriptor, bytes, count); });
}

INTERPOSE(ssize_t, pread, int descriptor, void* bytes, std::size_t count, off_t offset) {
    return perform(Touch("pread", descriptor),
                   [=] { return real_pread(descriptor, bytes, count, offset); });
}
ALSO_KNOWN_AS(pread, pread64)

INTERPOSE(ssize_t, write, int descriptor, const void* bytes, std::size_t count) {
    return perform(Touch("write", descriptor).writing(count),
                   [=](std::size_t part) { return real_write(descriptor, bytes, part); });
}

INTERPOSE(ssize_t, pwrite, int descriptor, const void* bytes, std::size_t count, off_t offset) {
    return perform(Touch("pwrite", descriptor).writing(count),
                   [=](std::size_t part) { return real_pwrite(descriptor, bytes, part, offset); });
}
ALSO_KNOWN_AS(pwrite, pwrite64)

INTERPOSE(ssize_t, writev, int descriptor, const iovec* parts, int count) {
    const std::size_t all = size(parts, count);
    return perform(Touch("writev", descriptor).writing(all), [=](std::size_t part) {
        if (part == all) return real_writev(descriptor, parts, count);
        const auto cut = beginning(parts, count, part);
        return real_writev(descriptor, cut.data(), static_cast<int>(cut.size()));
    });
}

INTERPOSE(ssize_t, sendfile, int target, int source, off_t* offset, std::size_t count) {
    return perform(Touch("sendfile", target).andDescriptor(source).writing(count),
                   [=](std::size_t part) { return real_sendfile(target, source, offset, part); });
}
ALSO_KNOWN_AS(sendfile, sendfile64)

INTERPOSE(ssize_t, copy_file_range, int source, off_t* sourceOffset, int target,
          off_t* targetOffset, std::size_t count, unsigned flags) {
    return perform(Touch("copy_file_range", target).andDescriptor(source).writing(count),
                   [=](std::size_t part) {
                       return real_copy_file_range(source, sourceOffset, target, targetOffset, part,
                                                   flags);
                   });
}

INTERPOSE(int, fsync, int descriptor) {
    return perform(Touch("fsync", descriptor).needingSpace(),
                   [=] { return real_fsync(descriptor); });
}

INTERPOSE(int, fdatasync, int descriptor) {
    return perform(Touch("fdatasync", descriptor).needingSpace(),
                   [=] { return real_fdatasync(descriptor); });
}

INTERPOSE(int, syncfs, int descriptor) {
    return perform(Touch("syncfs", descriptor).needingSpace(),
                   [=] { return real_syncfs(descriptor); });
}

INTERPOSE(int, sync_file_range, int descriptor, off_t offset, off_t count, unsigned flags) {
    return perform(Touch("sync_file_range", descriptor).needingSpace(),
                   [=] { return real_sync_file_range(descriptor, offset, count, flags); });
}

INTERPOSE(int, ftruncate, int descriptor, off_t size) {
    return perform(Touch("ftruncate", descriptor).needingSpace(),
                   [=] { return real_ftruncate(descriptor, size); });
}
ALSO_KNOWN_AS(ftruncate, ftruncate64)

INTERPOSE(int, fallocate, int descriptor, int mode, off_t offset, off_t count) {
    return perform(Touch("fallocate", descriptor).needingSpace(),
                   [=] { return real_fallocate(descriptor, mode, offset, count); });
}
ALSO_KNOWN_AS(fallocate, fallocate64)

// Names.

INTERPOSE(int, mkdir, const char* path, mode_t mode) {
    return perform(Touch("mkdir", AT_FDCWD, path).needingSpace(),
                   [=] { return real_mkdir(path, mode); });
}

INTERPOSE(int, mkdirat, int folder, const char* path, mode_t mode) {
    return perform(Touch("mkdirat", folder, path).needingSpace(),
                   [=] { return real_mkdirat(folder, path, mode); });
}

INTERPOSE(int, rename, const char* from, const char* to) {
    return perform(Touch("rename", AT_FDCWD, from).andPath(AT_FDCWD, to).needingSpace(),
                   [=] { return real_rename(from, to); });
}

INTERPOSE(int, renameat, int fromFolder, const char* from, int toFolder, const char* to) {
    return perform(Touch("renameat", fromFolder, from).andPath(toFolder, to).needingSpace(),
                   [=] { return real_renameat(fromFolder, from, toFolder, to); });
}

INTERPOSE(int, renameat2, int fromFolder, const char* from, int toFolder, const char* to,
          unsigned flags) {
    return perform(Touch("renameat2", fromFolder, from).andPath(toFolder, to).needingSpace(),
                   [=] { return real_renameat2(fromFolder, from, toFolder, to, flags); });
}

INTERPOSE(int, link, const char* from, const char* to) {
    return perform(Touch("link", AT_FDCWD, from).andPath(AT_FDCWD, to).needingSpace(),
                   [=] { return real_link(from, to); });
}

INTERPOSE(int, linkat, int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    return perform(Touch("linkat", fromFolder, from).andPath(toFolder, to).needingSpace(),
                   [=] { return real_linkat(fromFolder, from, toFolder, to, flags); });
}

INTERPOSE(int, unlink, const char* path) {
    return perform(Touch("unlink", AT_FDCWD, path), [=] { return real_unlink(path); });
}

INTERPOSE(int, unlinkat, int folder, const char* path, int flags) {
    return perform(Touch("unlinkat", folder, path),
                   [=] { return real_unlinkat(folder, path, flags); });
}

INTERPOSE(int, rmdir, const char* path) {
    return perform(Touch("rmdir", AT_FDCWD, path), [=] { return real_rmdir(path); });
}

INTERPOSE(int, remove, const char* path) {
    return perform(Touch("remove", AT_FDCWD, path), [=] { return real_remove(path); });
}

// Facts.

INTERPOSE(int, futimens, int descriptor, const timespec* times) {
    return perform(Touch("futimens", descriptor), [=] { return real_futimens(descriptor, times); });
}

INTERPOSE(int, utimensat, int folder, const char* path, const timespec* times, int flags) {
    return perform(Touch("utimensat", folder, path),
                   [=] { return real_utimensat(folder, path, times, flags); });
}

INTERPOSE(int, stat, const char* path, struct stat* facts) {
    return perform(Touch("stat", AT_FDCWD, path), [=] { return real_stat(path, facts); });
}
ALSO_KNOWN_AS(stat, stat64)

INTERPOSE(int, lstat, const char* path, struct stat* facts) {
    return perform(Touch("lstat", AT_FDCWD, path), [=] { return real_lstat(path, facts); });
}
ALSO_KNOWN_AS(lstat, lstat64)

INTERPOSE(int, fstat, int descriptor, struct stat* facts) {
    return perform(Touch("fstat", descriptor), [=] { return real_fstat(descriptor, facts); });
}
ALSO_KNOWN_AS(fstat, fstat64)

INTERPOSE(int, fstatat, int folder, const char* path, struct stat* facts, int flags) {
    return perform(Touch("fstatat", folder, path),
                   [=] { return real_fstatat(folder, path, facts, flags); });
}
ALSO_KNOWN_AS(fstatat, fstatat64)

INTERPOSE(int, statx, int folder, const char* path, int flags, unsigned mask, struct statx* facts) {
    return perform(Touch("statx", folder, path),
                   [=] { return real_statx(folder, path, flags, mask, facts); });
}

INTERPOSE(int, statvfs, const char* path, struct statvfs* facts) {
    return perform(Touch("statvfs", AT_FDCWD, path), [=] { return real_statvfs(path, facts); });
}
ALSO_KNOWN_AS(statvfs, statvfs64)

INTERPOSE(int, fstatvfs, int descriptor, struct statvfs* facts) {
    return perform(Touch("fstatvfs", descriptor), [=] { return real_fstatvfs(descriptor, facts); });
}
ALSO_KNOWN_AS(fstatvfs, fstatvfs64)

INTERPOSE(int, access, const char* path, int mode) {
    return perform(Touch("access", AT_FDCWD, path), [=] { return real_access(path, mode); });
}

INTERPOSE(int, faccessat, int folder, const char* path, int mode, int flags) {
    return perform(Touch("faccessat", folder, path),
                   [=] { return real_faccessat(folder, path, mode, flags); });
}

// Reading folders.

INTERPOSE(DIR*, opendir, const char* path) {
    return perform(Touch("opendir", AT_FDCWD, path), [=] { return real_opendir(path); });
}

INTERPOSE(DIR*, fdopendir, int descriptor) {
    return perform(Touch("fdopendir", descriptor), [=] { return real_fdopendir(descriptor); });
}

INTERPOSE(dirent*, readdir, DIR* folder) {
    return perform(Touch("readdir", dirfd(folder)), [=] { return real_readdir(folder); });
}
ALSO_KNOWN_AS(readdir, readdir64)

INTERPOSE(ssize_t, getdents64, int descriptor, void* entries, std::size_t room) {
    return perform(Touch("getdents64", descriptor),
                   [=] { return real_getdents64(descriptor, entries, room); });
}

// What has no function of its own everywhere, and what a program may call by number. Unused
// arguments are passed on, whatever they are worth.

INTERPOSE(long, syscall, long number, long a, long b, long c, long d, long e, long f) {
    const auto path = [](long argument) { return address<char>(argument); };
    const auto descriptor = [](long argument) { return static_cast<int>(argument); };
    const auto call = [=] { return real_syscall(number, a, b, c, d, e, f); };
    switch (number) {
        case SYS_openat:
            return perform(
                Touch("openat", descriptor(a), path(b)).needingSpace(creates(static_cast<int>(c))),
                call);
        case SYS_openat2: {
            const auto* how = address<open_how>(c);
            return perform(Touch("openat2", descriptor(a), path(b))
                               .needingSpace(creates(static_cast<int>(how->flags))),
                           call);
        }
        case SYS_mkdirat:
            return perform(Touch("mkdirat", descriptor(a), path(b)).needingSpace(), call);
        case SYS_renameat2:
            return perform(Touch("renameat2", descriptor(a), path(b))
                               .andPath(descriptor(c), path(d))
                               .needingSpace(),
                           call);
        case SYS_linkat:
            return perform(Touch("linkat", descriptor(a), path(b))
                               .andPath(descriptor(c), path(d))
                               .needingSpace(),
                           call);
        case SYS_unlinkat:
            return perform(Touch("unlinkat", descriptor(a), path(b)), call);
        case SYS_statx:
            return perform(Touch("statx", descriptor(a), path(b)), call);
        case SYS_faccessat:
        case SYS_faccessat2:
            return perform(Touch("faccessat", descriptor(a), path(b)), call);
        case SYS_utimensat:
            return perform(Touch("utimensat", descriptor(a), path(b)), call);
        case SYS_getdents64:
            return perform(Touch("getdents64", descriptor(a)), call);
        case SYS_fsync:
            return perform(Touch("fsync", descriptor(a)).needingSpace(), call);
        case SYS_copy_file_range:
            return perform(Touch("copy_file_range", descriptor(c))
                               .andDescriptor(descriptor(a))
                               .writing(static_cast<std::size_t>(e)),
                           [=](std::size_t part) {
                               return real_syscall(number, a, b, c, d, static_cast<long>(part), f);
                           });
        default:
            return call();
    }
}

}  // namespace bildkurier::faults
