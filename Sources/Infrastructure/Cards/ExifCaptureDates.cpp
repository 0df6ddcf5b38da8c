// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifCaptureDates.h"

#include "ExifTime.h"

#include <exiv2/basicio.hpp>
#include <exiv2/bmffimage.hpp>
#include <exiv2/error.hpp>
#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>
#include <exiv2/xmp_exiv2.hpp>
#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <string>

namespace bildkurier {

namespace {

/// A file whose mapping is memory with its beginning and its end read in, and zeros between.
/// To map the file itself would end the program when the card is pulled.
class UnmappedFile final : public Exiv2::FileIo {
public:
    /// Reads in no more than `head` bytes of the beginning.
    UnmappedFile(const std::string& path, std::size_t head) : FileIo(path), head_(head) {}
    UnmappedFile(const UnmappedFile&) = delete;
    UnmappedFile& operator=(const UnmappedFile&) = delete;
    ~UnmappedFile() override { release(); }

    Exiv2::byte* mmap(bool /*isWriteable*/) override {
        constexpr std::size_t tail = 64 << 10;
        release();
        const std::size_t length = size();
        void* memory = ::mmap(nullptr, length, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) throw Exiv2::Error(Exiv2::kerMallocFailed);
        memory_ = static_cast<Exiv2::byte*>(memory);
        length_ = length;
        const std::size_t first = std::min(head_, length);
        const std::size_t last = std::min(tail, length - first);
        readInto(0, first);
        readInto(length - last, last);
        hasGap_ = first + last < length;
        return memory_;
    }

    int munmap() override {
        release();
        return 0;
    }

    /// Whether a part of what was mapped was not read.
    bool hasGap() const { return hasGap_; }

private:
    void readInto(std::size_t offset, std::size_t count) {
        if (count == 0 || seek(static_cast<long>(offset), beg) != 0) return;
        read(memory_ + offset, static_cast<long>(count));
    }

    void release() {
        if (memory_ != nullptr) ::munmap(memory_, length_);
        memory_ = nullptr;
    }

    std::size_t head_;
    bool hasGap_ = false;
    Exiv2::byte* memory_ = nullptr;
    std::size_t length_ = 0;
};

/// Exiv2 asks for a lock where it reads XMP, which is not safe for threads by itself.
void lockXmp(void* mutex, bool lock) {
    auto& xmp = *static_cast<std::recursive_mutex*>(mutex);
    lock ? xmp.lock() : xmp.unlock();
}

void initializeExiv2() {
    static std::recursive_mutex xmp;
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::enableBMFF(true);
    Exiv2::XmpParser::initialize(&lockXmp, &xmp);
}

/// What one look into a photo finds.
struct Finding {
    std::optional<Date> date;
    bool mayBeElsewhere = false;  ///< no date field where was looked, but not everywhere was
};

void readDate(const Exiv2::ExifData& exif, Finding& finding) {
    for (const char* key :
         {"Exif.Photo.DateTimeOriginal", "Exif.Photo.DateTimeDigitized", "Exif.Image.DateTime"}) {
        const auto found = exif.findKey(Exiv2::ExifKey(key));
        if (found == exif.end()) continue;
        const std::string text = found->toString();
        constexpr std::size_t dateLength = 19;
        if (std::min(text.find('\0'), text.size()) < dateLength) continue;  // some lies in the gap
        finding.mayBeElsewhere = false;
        finding.date = exifTime(text);
        if (finding.date) return;
    }
}

/// Looks into no more than the first `head` bytes, and the last ones, of a file that is mapped.
Finding look(const std::string& path, std::size_t head) {
    const auto image =
        Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new UnmappedFile(path, head)));
    if (image.get() == nullptr) return {};  // of no known format
    const auto& file = static_cast<const UnmappedFile&>(image->io());
    try {
        image->readMetadata();
    } catch (const Exiv2::AnyError&) {
        return {.mayBeElsewhere = file.hasGap()};  // over which some formats fail
    }
    Finding finding{.mayBeElsewhere = file.hasGap()};
    readDate(image->exifData(), finding);
    return finding;
}

}  // namespace

ExifCaptureDates::ExifCaptureDates() {
    static std::once_flag initialized;
    std::call_once(initialized, initializeExiv2);
}

std::optional<Date> ExifCaptureDates::captureDate(const std::string& path) {
    constexpr std::size_t usualHead = 256 << 10;
    constexpr std::size_t longestHead = 200 << 20;
    // Whole photos fill the memory, and a card reads no faster for two at once.
    static std::mutex wholePhoto;
    try {
        Finding finding = look(path, usualHead);
        if (finding.mayBeElsewhere) {
            const std::lock_guard lock(wholePhoto);
            finding = look(path, longestHead);
        }
        return finding.date;
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace bildkurier
