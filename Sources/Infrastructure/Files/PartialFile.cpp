// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PartialFile.h"

#include "FileName.h"
#include "SystemCall.h"
#include "SystemError.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::int64_t stepBytes = 4 << 20;

std::unexpected<Error> writeFailure(int code) {
    return failure("Die Datei lässt sich nicht speichern: " + systemError(code).message);
}

}  // namespace

PartialFile::~PartialFile() {
    if (isPartial_ && isInItsPlace()) ::unlinkat(folder_.get(), name_.c_str(), 0);
}

bool PartialFile::isInItsPlace() const {
    struct stat there{};
    return ::fstatat(folder_.get(), name_.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
           there.st_dev == device_ && there.st_ino == inode_;
}

Result<> PartialFile::create(const std::string& folder, std::string name, bool overwrite) {
    if (!isPlainFileName(name)) return failure("Ungültiger Dateiname");
    name_ = std::move(name);
    folder_ = FileDescriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder_) return writeFailure(errno);
    if (overwrite && ::unlinkat(folder_.get(), name_.c_str(), 0) != 0 && errno != ENOENT)
        return writeFailure(errno);
    constexpr mode_t readWriteForAll = 0666;
    file_ = FileDescriptor(retried([this] {
        return ::openat(folder_.get(), name_.c_str(),
                        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, readWriteForAll);
    }));
    struct stat made{};
    if (!file_ || ::fstat(file_.get(), &made) != 0) return writeFailure(errno);
    device_ = made.st_dev;
    inode_ = made.st_ino;
    isPartial_ = true;
    return {};
}

Result<> PartialFile::append(std::span<const char> bytes) {
    size_ += std::ssize(bytes);
    if (const int code = writeAll(file_, bytes); code != 0) return writeFailure(code);
    // Lets the disk begin now, so that flushing the finished file takes little time.
    if (size_ - begun_ >= stepBytes) {
        ::sync_file_range(file_.get(), begun_, size_ - begun_, SYNC_FILE_RANGE_WRITE);
        begun_ = size_;
    }
    return {};
}

Result<> PartialFile::complete(const std::timespec& modified) {
    const std::array times{std::timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, modified};
    // Not every file system lets a time be set; what counts is what is in the file.
    ::futimens(file_.get(), times.data());
    // Moving it flushes it, too; but a failure that the disk has met already could be forgotten
    // by then.
    if (begun_ > 0 && retried([this] { return ::fsync(file_.get()); }) != 0)
        return writeFailure(errno);
    if (const int code = file_.close(); code != 0) return writeFailure(code);
    isPartial_ = false;
    return {};
}

}  // namespace bildkurier
