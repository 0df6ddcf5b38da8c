// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CopyFile.h"

#include "FileName.h"
#include "SameTime.h"
#include "SystemCall.h"
#include "SystemError.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::int64_t stepBytes = 4 << 20;

std::unexpected<Error> writeFailure(int code) {
    return failure("Die Datei lässt sich nicht speichern: " + systemError(code).message);
}

std::unexpected<Error> tooShort(std::int64_t actual, std::int64_t expected) {
    return failure(fmt::format(
        "Die Datei ist auf der Karte kürzer als angegeben ({} statt {} Bytes)", actual, expected));
}

std::unexpected<Error> tooLong(std::int64_t expected) {
    return failure(
        fmt::format("Die Datei ist auf der Karte länger als die angegebenen {} Bytes", expected));
}

/// A new file that is removed again unless it was completed.
class PartialFile {
public:
    PartialFile(FileDescriptor folder, std::string name)
        : folder_(std::move(folder)), name_(std::move(name)) {}
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;
    ~PartialFile() {
        if (isPartial_) ::unlinkat(folder_.get(), name_.c_str(), 0);
    }

    Result<> create(bool overwrite) {
        if (overwrite && ::unlinkat(folder_.get(), name_.c_str(), 0) != 0 && errno != ENOENT)
            return writeFailure(errno);
        constexpr mode_t readWriteForAll = 0666;
        file_ = FileDescriptor(retried([this] {
            return ::openat(folder_.get(), name_.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, readWriteForAll);
        }));
        if (!file_) return writeFailure(errno);
        isPartial_ = true;
        return {};
    }

    Result<> append(std::span<const char> bytes) {
        const std::size_t begin = std::exchange(size_, size_ + bytes.size());
        if (const int code = writeAll(file_, bytes); code != 0) return writeFailure(code);
        // Lets the disk begin now, so that flushing the finished file takes little time.
        if (bytes.size() == stepBytes) {
            ::sync_file_range(file_.get(), static_cast<off64_t>(begin), stepBytes,
                              SYNC_FILE_RANGE_WRITE);
            diskHasBegun_ = true;
        }
        return {};
    }

    Result<> complete(const std::timespec& modified) {
        const std::array times{std::timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, modified};
        // Not every file system lets a time be set; what counts is what is in the file.
        ::futimens(file_.get(), times.data());
        // Moving it flushes it, too; but a failure that the disk has met already could be
        // forgotten by then.
        if (diskHasBegun_ && retried([this] { return ::fsync(file_.get()); }) != 0)
            return writeFailure(errno);
        if (const int code = file_.close(); code != 0) return writeFailure(code);
        isPartial_ = false;
        return {};
    }

private:
    FileDescriptor folder_;
    std::string name_;
    FileDescriptor file_;
    std::size_t size_ = 0;
    bool diskHasBegun_ = false;
    bool isPartial_ = false;
};

/// Reads exactly `size` bytes, to which the file must end.
Result<> copyBytes(const FileDescriptor& source, std::int64_t size, PartialFile& copy,
                   const std::function<std::optional<Error>()>& whyStop) {
    // One byte more than is wanted shows a file that has grown.
    const auto nextStep = [size](std::int64_t copied) {
        return static_cast<std::size_t>(std::min(stepBytes - 1, size - copied) + 1);
    };
    const auto buffer = std::make_unique_for_overwrite<char[]>(nextStep(0));
    for (std::int64_t copied = 0;;) {
        if (auto reason = whyStop()) return std::unexpected(*std::move(reason));
        const auto count =
            retried([&] { return ::read(source.get(), buffer.get(), nextStep(copied)); });
        if (count < 0) return unreadableOnCard(errno);
        if (count == 0) return copied == size ? Result<>() : tooShort(copied, size);
        copied += count;
        if (copied > size) return tooLong(size);
        auto appended = copy.append({buffer.get(), static_cast<std::size_t>(count)});
        if (!appended) return appended;
    }
}

}  // namespace

std::unexpected<Error> unreadableOnCard(int code) {
    return failure("Die Datei ist auf der Karte nicht lesbar: " + systemError(code).message);
}

Result<> copyFile(const FileDescriptor& source, std::int64_t size, const DownloadRequest& request,
                  const std::function<std::optional<Error>()>& whyStop) {
    if (!isPlainFileName(request.saveAs))
        return failure("Der Dateiname ist nicht zulässig: " + displayText(request.saveAs));
    struct stat before{};
    if (::fstat(source.get(), &before) != 0) return unreadableOnCard(errno);
    if (!S_ISREG(before.st_mode)) return failure("Auf der Karte steht dort keine Datei");
    if (before.st_size < size) return tooShort(before.st_size, size);
    if (before.st_size > size) return tooLong(size);

    FileDescriptor folder(::open(request.directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return writeFailure(errno);
    PartialFile copy(std::move(folder), request.saveAs);
    if (auto created = copy.create(request.overwrite); !created) return created;
    ::posix_fadvise(source.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    if (auto copied = copyBytes(source, size, copy, whyStop); !copied) return copied;

    struct stat after{};
    if (::fstat(source.get(), &after) != 0) return unreadableOnCard(errno);
    if (!isSameTime(before.st_mtim, after.st_mtim))
        return failure("Die Datei auf der Karte hat sich während des Ladens geändert");
    return copy.complete(before.st_mtim);
}

}  // namespace bildkurier
