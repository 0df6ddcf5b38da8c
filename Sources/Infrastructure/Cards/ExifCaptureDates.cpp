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

namespace bildkurier {

namespace {

/// A file whose mapping is memory with its beginning and its end read in, where formats that
/// are mapped keep their metadata, and zeros between. To map the file itself would end the
/// program when the card is pulled.
class UnmappedFile final : public Exiv2::FileIo {
public:
    using FileIo::FileIo;
    UnmappedFile(const UnmappedFile&) = delete;
    UnmappedFile& operator=(const UnmappedFile&) = delete;
    ~UnmappedFile() override { release(); }

    Exiv2::byte* mmap(bool /*isWriteable*/) override {
        constexpr std::size_t head = 256 << 10;
        constexpr std::size_t tail = 64 << 10;
        release();
        const std::size_t length = size();
        void* memory = ::mmap(nullptr, length, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED) throw Exiv2::Error(Exiv2::kerMallocFailed);
        memory_ = static_cast<Exiv2::byte*>(memory);
        length_ = length;
        readInto(0, std::min(head, length));
        if (length > head) {
            const std::size_t rest = std::min(tail, length - head);
            readInto(length - rest, rest);
        }
        return memory_;
    }

    int munmap() override {
        release();
        return 0;
    }

private:
    void readInto(std::size_t offset, std::size_t count) {
        if (seek(static_cast<long>(offset), beg) != 0) return;
        read(memory_ + offset, static_cast<long>(count));
    }

    void release() {
        if (memory_ != nullptr) ::munmap(memory_, length_);
        memory_ = nullptr;
    }

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

std::optional<Date> captureDate(const Exiv2::ExifData& exif) {
    for (const char* key :
         {"Exif.Photo.DateTimeOriginal", "Exif.Photo.DateTimeDigitized", "Exif.Image.DateTime"}) {
        const auto found = exif.findKey(Exiv2::ExifKey(key));
        if (found == exif.end()) continue;
        if (const auto date = exifTime(found->toString())) return date;
    }
    return std::nullopt;
}

}  // namespace

ExifCaptureDates::ExifCaptureDates() {
    static std::once_flag initialized;
    std::call_once(initialized, initializeExiv2);
}

std::optional<Date> ExifCaptureDates::captureDate(const std::string& path) {
    try {
        const auto image =
            Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new UnmappedFile(path)));
        if (image.get() == nullptr) return std::nullopt;  // of no known format
        image->readMetadata();
        return bildkurier::captureDate(image->exifData());
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace bildkurier
