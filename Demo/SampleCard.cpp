// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SampleCard.h"

#include "CaptureMetadata.h"
#include "Film.h"
#include "JpegFile.h"
#include "Landscape.h"
#include "TiffFile.h"
#include "WaveFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <fstream>
#include <string_view>
#include <system_error>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;
using std::chrono::local_seconds;

constexpr std::string_view firstFolder = "DCIM/100BILDK";
constexpr std::string_view secondFolder = "DCIM/101BILDK";

struct Shot {
    std::string_view folder;
    int number;
    std::string_view extension;
    local_seconds captured;
};

constexpr local_days june29{2024y / 6 / 29};
constexpr local_days june30{2024y / 6 / 30};
constexpr local_days july1{2024y / 7 / 1};
constexpr local_days july14{2024y / 7 / 14};
constexpr local_days july15{2024y / 7 / 15};
constexpr local_days august3{2024y / 8 / 3};

/// The counter of the camera runs on from folder to folder, so that every file has a name of
/// its own.
constexpr auto shots = std::to_array<Shot>({
    {firstFolder, 1, "JPG", june29 + 5h + 41min + 12s},
    {firstFolder, 2, "JPG", june29 + 9h + 3min + 55s},
    {firstFolder, 3, "JPG", june29 + 12h + 30min + 8s},
    {firstFolder, 4, "JPG", june29 + 19h + 47min + 31s},
    {firstFolder, 5, "JPG", june29 + 23h + 58min + 46s},
    {firstFolder, 6, "JPG", june30 + 0h + 2min + 19s},
    {firstFolder, 7, "JPG", june30 + 7h + 15min + 0s},
    {firstFolder, 8, "JPG", june30 + 11h + 22min + 37s},
    {firstFolder, 9, "TIF", june30 + 11h + 23min + 2s},
    {firstFolder, 10, "JPG", june30 + 16h + 5min + 44s},
    {firstFolder, 11, "JPG", july1 + 8h + 49min + 27s},
    {firstFolder, 12, "JPG", july1 + 13h + 12min + 59s},
    {firstFolder, 13, "JPG", july1 + 20h + 31min + 3s},
    {secondFolder, 15, "JPG", july14 + 6h + 18min + 40s},
    {secondFolder, 16, "JPG", july14 + 10h + 54min + 21s},
    {secondFolder, 17, "JPG", july14 + 14h + 7min + 33s},
    {secondFolder, 18, "TIF", july14 + 14h + 8min + 10s},
    {secondFolder, 19, "JPG", july14 + 21h + 26min + 5s},
    {secondFolder, 20, "JPG", july15 + 5h + 59min + 48s},
    {secondFolder, 21, "JPG", july15 + 9h + 40min + 16s},
    {secondFolder, 22, "TIF", july15 + 9h + 41min + 0s},
    {secondFolder, 23, "JPG", july15 + 18h + 33min + 52s},
    {secondFolder, 24, "JPG", august3 + 7h + 24min + 11s},
    {secondFolder, 25, "JPG", august3 + 12h + 0min + 0s},
    {secondFolder, 26, "JPG", august3 + 15h + 45min + 38s},
    {secondFolder, 27, "JPG", august3 + 20h + 11min + 6s},
    {secondFolder, 28, "JPG", august3 + 22h + 50min + 29s},
});

double hourOf(local_seconds moment) {
    const auto sinceMidnight = moment - std::chrono::floor<std::chrono::days>(moment);
    return std::chrono::duration<double, std::ratio<3600>>(sinceMidnight).count();
}

std::string fileName(std::string_view folder, std::string_view prefix, int number,
                     std::string_view extension) {
    return fmt::format("{}/{}_{:04}.{}", folder, prefix, number, extension);
}

/// A view that moves slowly from left to right.
Film filmOf(const Landscape& view, int width, int height, int seconds) {
    Film film{.width = width, .height = height, .framesPerSecond = 15, .frames = {}};
    const int count = seconds * film.framesPerSecond;
    const Picture panorama = view.draw(width + count, height);
    for (int i = 0; i < count; ++i) {
        film.frames.push_back(encodeJpeg(panorama.cut(i, width), 88));
    }
    return film;
}

}  // namespace

void SampleCard::write() const {
    writePictures();
    writeFilms();
    writeSounds();
    writeLeftovers();
}

void SampleCard::writePictures() const {
    int seed = 0;
    for (const auto& shot : shots) {
        const Landscape view{.seed = ++seed, .hour = hourOf(shot.captured)};
        const bool tiff = shot.extension == "TIF";
        const std::string picture =
            tiff ? encodeTiff(view.draw(320, 213)) : encodeJpeg(view.draw(640, 427), 90);
        add(fileName(shot.folder, "IMG", shot.number, shot.extension), shot.captured,
            CaptureMetadata{shot.captured}.writtenInto(picture));
    }
    const auto& rated = shots.at(2);
    const auto& best = shots.back();
    add(fileName(rated.folder, "IMG", rated.number, "XMP"), rated.captured,
        CaptureMetadata{rated.captured}.asXmp(4));
    add(fileName(best.folder, "IMG", best.number, "XMP"), best.captured,
        CaptureMetadata{best.captured}.asXmp(5));
}

void SampleCard::writeFilms() const {
    const auto addFilm = [this](std::string_view folder, int number, Moment captured,
                                const Film& film) {
        add(fileName(folder, "MVI", number, "AVI"), captured, encodeAvi(film));
        const Landscape view{.seed = number, .hour = hourOf(captured)};
        add(fileName(folder, "MVI", number, "THM"), captured, encodeJpeg(view.draw(160, 120), 85));
    };
    const Moment evening = july1 + 20h + 33min + 50s;
    addFilm(firstFolder, 14, evening, filmOf({.seed = 14, .hour = hourOf(evening)}, 320, 240, 4));
    const Moment noon = august3 + 12h + 4min + 25s;
    addFilm(secondFolder, 29, noon, filmOf({.seed = 29, .hour = hourOf(noon)}, 480, 320, 8));
}

void SampleCard::writeSounds() const {
    const auto& described = shots.at(9);
    add(fileName(described.folder, "IMG", described.number, "WAV"), described.captured + 20s,
        encodeTone(440, 2));
    add(fileName(secondFolder, "SND", 30, "WAV"), august3 + 12h + 6min + 1s, encodeTone(330, 3));
}

void SampleCard::writeLeftovers() const {
    const Moment last = shots.back().captured;
    add("MISC/INDEX.CTG", last, "Verzeichnis der Kamera\n");
    add(fmt::format("{}/._IMG_0001.JPG", firstFolder), last, "Zusatz eines Computers\n");
}

void SampleCard::add(const std::filesystem::path& name, Moment captured,
                     const std::string& bytes) const {
    const auto path = root_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file << bytes;
    file.close();

    // As a wall clock first, because only mktime knows the time zone of this computer.
    const std::time_t clock = captured.time_since_epoch().count();
    std::tm parts{};
    gmtime_r(&clock, &parts);
    parts.tm_isdst = -1;
    const std::timespec time{.tv_sec = std::mktime(&parts), .tv_nsec = 0};
    const std::array<std::timespec, 2> times{time, time};
    if (utimensat(AT_FDCWD, path.c_str(), times.data(), 0) != 0) {
        throw std::filesystem::filesystem_error("utimensat", path,
                                                std::error_code(errno, std::generic_category()));
    }
}

}  // namespace bildkurier
