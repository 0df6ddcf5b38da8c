// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TestPhoto.h"

#include <exiv2/basicio.hpp>
#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>

namespace bildkurier {

std::string testPhoto(const std::map<std::string, std::string>& metadata) {
    // The beginning of a picture, an empty application segment, and its end.
    constexpr unsigned char jpeg[] = {0xFF, 0xD8, 0xFF, 0xEF, 0x00, 0x02, 0xFF, 0xD9};
    const auto image = Exiv2::ImageFactory::open(jpeg, sizeof jpeg);
    for (const auto& [key, value] : metadata) image->exifData()[key] = value;
    image->writeMetadata();
    std::string bytes(image->io().size(), '\0');
    image->io().seek(0, Exiv2::BasicIo::beg);
    image->io().read(reinterpret_cast<Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()));
    return bytes;
}

}  // namespace bildkurier
