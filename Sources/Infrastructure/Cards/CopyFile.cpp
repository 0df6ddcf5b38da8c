// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CopyFile.h"

#include "DownloadFence.h"
#include "PartialFile.h"
#include "SameTime.h"
#include "SystemCall.h"
#include "SystemError.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <span>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::int64_t stepBytes = 4 << 20;

std::unexpected<Error> tooShort(std::int64_t actual, std::int64_t expected) {
    return failure(fmt::format(
        "Die Datei ist auf der Karte kürzer als angegeben ({} statt {} Bytes)", actual, expected));
}

std::unexpected<Error> tooLong(std::int64_t expected) {
    return failure(
        fmt::format("Die Datei ist auf der Karte länger als die angegebenen {} Bytes", expected));
}

using WhyStop = std::function<std::optional<Error>()>;

Result<> create(PartialFile& copy, const DownloadRequest& request, const WhyStop& whyStop) {
    Result<> created;
    withDownloadFence(request.directory, [&] {
        if (auto reason = whyStop()) {
            created = std::unexpected(*std::move(reason));
        } else {
            created = copy.create(request.directory, request.saveAs, request.overwrite);
        }
    });
    return created;
}

/// Reads exactly `size` bytes, to which the file must end.
Result<> copyBytes(const FileDescriptor& source, std::int64_t size, PartialFile& copy,
                   const WhyStop& whyStop) {
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

/// The file that was like `before` when it was opened.
Result<> copyWhole(const FileDescriptor& source, const struct stat& before, PartialFile& copy,
                   const WhyStop& whyStop) {
    ::posix_fadvise(source.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    if (auto copied = copyBytes(source, before.st_size, copy, whyStop); !copied) return copied;
    struct stat after{};
    if (::fstat(source.get(), &after) != 0) return unreadableOnCard(errno);
    if (!isSameTime(before.st_mtim, after.st_mtim))
        return failure("Die Datei auf der Karte hat sich während des Ladens geändert");
    return copy.complete(before.st_mtim);
}

}  // namespace

std::unexpected<Error> unreadableOnCard(int code) {
    return failure("Die Datei ist auf der Karte nicht lesbar: " + systemError(code).message);
}

Result<> copyFile(const FileDescriptor& source, std::int64_t size, const DownloadRequest& request,
                  const WhyStop& whyStop) {
    struct stat before{};
    if (::fstat(source.get(), &before) != 0) return unreadableOnCard(errno);
    if (!S_ISREG(before.st_mode)) return failure("Auf der Karte steht dort keine Datei");
    if (before.st_size < size) return tooShort(before.st_size, size);
    if (before.st_size > size) return tooLong(size);

    std::optional<PartialFile> copy(std::in_place);
    if (auto created = create(*copy, request, whyStop); !created) return created;
    auto copied = copyWhole(source, before, *copy, whyStop);
    if (!copied) withDownloadFence(request.directory, [&] { copy.reset(); });
    return copied;
}

}  // namespace bildkurier
