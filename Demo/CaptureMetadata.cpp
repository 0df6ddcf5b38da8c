// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CaptureMetadata.h"

#include <exiv2/exiv2.hpp>
#include <fmt/format.h>

namespace bildkurier {
namespace {

std::string text(std::chrono::local_seconds moment, char dateMark, char between) {
    const auto midnight = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss time(moment - midnight);
    return fmt::format("{:04}{}{:02}{}{:02}{}{:02}:{:02}:{:02}", static_cast<int>(day.year()),
                       dateMark, static_cast<unsigned>(day.month()), dateMark,
                       static_cast<unsigned>(day.day()), between, time.hours().count(),
                       time.minutes().count(), time.seconds().count());
}

}  // namespace

std::string CaptureMetadata::writtenInto(const std::string& file) const {
    const auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(file.data()),
                                                 static_cast<long>(file.size()));
    image->readMetadata();
    auto& exif = image->exifData();
    exif["Exif.Image.Make"] = "Bildkurier";
    exif["Exif.Image.Model"] = "Musterkamera";
    exif["Exif.Image.DateTime"] = text(captured, ':', ' ');
    exif["Exif.Photo.DateTimeOriginal"] = text(captured, ':', ' ');
    exif["Exif.Photo.DateTimeDigitized"] = text(captured, ':', ' ');
    image->writeMetadata();

    auto& written = image->io();
    written.open();
    const auto bytes = written.read(static_cast<long>(written.size()));
    return {reinterpret_cast<const char*>(bytes.pData_), static_cast<std::size_t>(bytes.size_)};
}

std::string CaptureMetadata::asXmp(int rating) const {
    return fmt::format(R"(<?xpacket begin="" id="W5M0MpCehiHzreSzNTczkc9d"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/">
 <rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
  <rdf:Description rdf:about=""
    xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmp:CreateDate="{}" xmp:Rating="{}"/>
 </rdf:RDF>
</x:xmpmeta>
<?xpacket end="w"?>
)",
                       text(captured, '-', 'T'), rating);
}

}  // namespace bildkurier
