// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SameContent.h"

#include "FileDescriptor.h"
#include "MarkedFolder.h"
#include "OpenBelow.h"
#include "SystemCall.h"
#include "SystemError.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::string_view onCard = "auf der Karte";
constexpr std::string_view atDestination = "am Ziel";
constexpr std::size_t comparedBytes = 1 << 20;
constexpr std::align_val_t blockBytes{4096};  ///< what reads past the cache have to begin at

struct FreeBlock {
    void operator()(char* block) const { ::operator delete[](block, blockBytes); }
};

/// Memory into which can be read past the cache.
class Buffer {
public:
    char* data() const { return bytes_.get(); }

private:
    std::unique_ptr<char[], FreeBlock> bytes_{
        static_cast<char*>(::operator new[](comparedBytes, blockBytes))};
};

std::unexpected<Error> unreadable(std::string_view side, int code) {
    return failure(std::string(side) + " nicht lesbar: " + systemError(code).message);
}

std::unexpected<Error> changed(std::string_view side) {
    return failure(fmt::format("hat sich {} während der Prüfung verändert", side));
}

/// A file that is read from the medium, front to back.
class FileOnMedium {
public:
    explicit FileOnMedium(std::string_view side) : side_(side) {}
    FileOnMedium(const FileOnMedium&) = delete;
    FileOnMedium& operator=(const FileOnMedium&) = delete;
    ~FileOnMedium() {
        // What had to go through the cache is not to answer whoever asks next.
        if (file_) forgetCache();
    }

    /// Answers how many bytes it has.
    Result<std::int64_t> open(const PlacedFile& place) {
        const FileDescriptor root = openFolder(place.folder.path, O_PATH, place.mark);
        if (!root) return unreadable(side_, errno);
        // Not blocked by what may stand there instead of the file by now.
        constexpr int how = O_RDONLY | O_NONBLOCK;
        file_ = openBelow(root, place.path, how | O_DIRECT);
        isDirect_ = static_cast<bool>(file_);
        if (!file_) file_ = openBelow(root, place.path, how);
        struct stat found{};
        if (!file_ || ::fstat(file_.get(), &found) != 0) return unreadable(side_, errno);
        if (!S_ISREG(found.st_mode)) return failure(std::string(side_) + " steht dort keine Datei");
        // Some file systems answer direct reads from the cache, too.
        forgetCache();
        return found.st_size;
    }

    /// The next bytes: as many as there are, a whole step at most.
    Result<std::span<const char>> next() {
        std::size_t filled = 0;
        while (filled < comparedBytes) {
            const auto count = readTo(filled);
            if (count < 0) return unreadable(side_, errno);
            if (count == 0) break;
            filled += static_cast<std::size_t>(count);
            // Past the cache, reading can go on only at a block's beginning: this was the end.
            if (isDirect_ && filled % static_cast<std::size_t>(blockBytes) != 0) break;
        }
        offset_ += static_cast<std::int64_t>(filled);
        return std::span<const char>(buffer_.data(), filled);
    }

private:
    ssize_t readTo(std::size_t filled) {
        const auto read = [&] {
            return ::pread(file_.get(), buffer_.data() + filled, comparedBytes - filled,
                           offset_ + static_cast<std::int64_t>(filled));
        };
        const auto count = retried(read);
        if (count >= 0 || errno != EINVAL || !isDirect_) return count;
        // Some file systems take the flag, but not the reading.
        isDirect_ = false;
        if (!openAgain()) return -1;
        forgetCache();
        return retried(read);
    }

    /// Through the cache: one in user space may have passed the flag on.
    bool openAgain() {
        const std::string path = fmt::format("/proc/self/fd/{}", file_.get());
        FileDescriptor again(
            retried([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
        if (!again) return false;
        file_ = std::move(again);
        return true;
    }

    /// What is still to be written goes to the medium first, for it cannot be forgotten.
    void forgetCache() const {
        ::fdatasync(file_.get());
        ::posix_fadvise(file_.get(), 0, 0, POSIX_FADV_DONTNEED);
    }

    std::string_view side_;
    FileDescriptor file_;
    bool isDirect_ = false;
    std::int64_t offset_ = 0;
    Buffer buffer_;
};

}  // namespace

Result<bool> haveSameContent(const PlacedFile& card, const PlacedFile& destination,
                             std::int64_t size, const std::function<bool(std::int64_t)>& step) {
    FileOnMedium first(onCard);
    FileOnMedium second(atDestination);
    const auto firstSize = first.open(card);
    if (!firstSize) return std::unexpected(firstSize.error());
    const auto secondSize = second.open(destination);
    if (!secondSize) return std::unexpected(secondSize.error());
    if (*firstSize != size) return changed(onCard);
    if (*secondSize != size) return changed(atDestination);
    std::int64_t compared = 0;
    while (compared < size) {
        const auto ours = first.next();
        if (!ours) return std::unexpected(ours.error());
        const auto theirs = second.next();
        if (!theirs) return std::unexpected(theirs.error());
        if (ours->size() != theirs->size())
            return changed(ours->size() < theirs->size() ? onCard : atDestination);
        if (std::memcmp(ours->data(), theirs->data(), ours->size()) != 0) return false;
        if (ours->empty()) return changed(onCard);
        compared += std::ssize(*ours);
        if (!step(std::ssize(*ours))) return failure("Die Prüfung wurde abgebrochen");
    }
    return compared == size;
}

}  // namespace bildkurier
