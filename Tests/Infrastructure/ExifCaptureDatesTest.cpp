// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ExifCaptureDates.h"
#include "InTimeZone.h"
#include "TemporaryFolder.h"
#include "TestPhoto.h"
#include "Tree.h"
#include "Workers.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {
namespace {

using namespace std::chrono_literals;

constexpr const char* original = "Exif.Photo.DateTimeOriginal";
constexpr const char* digitized = "Exif.Photo.DateTimeDigitized";
constexpr const char* changed = "Exif.Image.DateTime";

/// `day` of July 2024, noon in UTC.
Date july(unsigned day) {
    return std::chrono::sys_days(std::chrono::year(2024) / 7 / std::chrono::day(day)) + 12h;
}

std::string big(std::uint64_t value, int bytes) {
    std::string text;
    while (bytes-- > 0) text += static_cast<char>(value >> (8 * bytes));
    return text;
}

/// A TIFF file of `size` bytes whose only directory is at `offset`, with the date in it.
std::string tiff(std::size_t size, std::size_t offset) {
    std::string bytes(size, '\xA5');
    bytes.replace(0, 8, "MM" + big(42, 2) + big(offset, 4));
    const std::string entry = big(0x0132, 2) + big(2, 2) + big(20, 4) + big(offset + 18, 4);
    bytes.replace(offset, 38,
                  big(1, 2) + entry + big(0, 4) + std::string("2024:07:15 12:00:00\0", 20));
    return bytes;
}

std::string box(std::string_view type, const std::string& contents) {
    return big(contents.size() + 8, 4) + std::string(type) + contents;
}

/// An ISO media file, as cameras write them today, that keeps its Exif data behind the rest.
std::string isoMedia() {
    const std::string exif = big(0, 4) + tiff(64, 8);
    const auto withOffset = [&](std::size_t offset) {
        const std::string item = big(0x0200'0000, 4) + big(1, 2) + big(0, 2) + "Exif" + big(0, 1);
        const std::string location = big(0, 4) + big(0x4400, 2) + big(1, 2) + big(1, 2) +
                                     big(0, 2) + big(1, 2) + big(offset, 4) + big(exif.size(), 4);
        return box("ftyp", "heic" + big(0, 4) + "mif1heic") +
               box("meta", big(0, 4) + box("iinf", big(0, 4) + big(1, 2) + box("infe", item)) +
                               box("iloc", location)) +
               box("mdat", exif);
    };
    return withOffset(withOffset(0).size() - exif.size());
}

class ExifCaptureDatesTest : public testing::Test {
protected:
    const InTimeZone utc{"UTC"};
    TemporaryFolder folder;
    ExifCaptureDates dates;

    std::optional<Date> dateIn(const std::string& bytes) {
        return dates.captureDate(folder.write("photo", bytes));
    }
};

TEST_F(ExifCaptureDatesTest, ReadsTheMomentOfTheShotBeforeAnyOther) {
    const struct {
        std::map<std::string, std::string> metadata;
        std::optional<Date> date;
    } cases[] = {
        {{{original, "2024:07:01 12:00:00"},
          {digitized, "2024:07:02 12:00:00"},
          {changed, "2024:07:03 12:00:00"}},
         july(1)},
        {{{digitized, "2024:07:02 12:00:00"}, {changed, "2024:07:03 12:00:00"}}, july(2)},
        {{{changed, "2024:07:03 12:00:00"}}, july(3)},
        {{{original, "0000:00:00 00:00:00"}, {digitized, "2024:07:02 12:00:00"}}, july(2)},
        {{{original, "    :  :     :  :  "}, {changed, "2024:07:03 12:00:00"}}, july(3)},
        {{{original, "0000:00:00 00:00:00"}}, {}},
        {{{"Exif.Image.Make", "Hersteller"}}, {}},
        {{}, {}},
    };
    for (const auto& [metadata, date] : cases) EXPECT_EQ(dateIn(testPhoto(metadata)), date);
}

TEST_F(ExifCaptureDatesTest, TakesTheCamerasClockForLocalTime) {
    const std::string path = folder.write("photo", testPhoto({{original, "2024:07:15 12:00:00"}}));
    const InTimeZone berlin("Europe/Berlin");
    EXPECT_EQ(dates.captureDate(path), july(15) - 2h);
}

TEST_F(ExifCaptureDatesTest, ReadsFilesThatAreMapped) {
    for (const std::size_t size : {46U, 100'000U, 300'000U, 400'000U, 5'000'000U})
        EXPECT_EQ(dateIn(tiff(size, 8)), july(15)) << size;
    EXPECT_EQ(dateIn(tiff(5'000'000, 200'000)), july(15));
    EXPECT_EQ(dateIn(tiff(5'000'000, 5'000'000 - 38)), july(15));
    EXPECT_EQ(dateIn(tiff(300'000, 260'000)), july(15));
}

TEST_F(ExifCaptureDatesTest, FindsTheDateInTheMiddleOfAFileThatIsMapped) {
    for (const std::size_t offset : {262'110U, 262'130U, 300'000U, 2'000'000U, 4'934'440U})
        EXPECT_EQ(dateIn(tiff(5'000'000, offset)), july(15)) << offset;
}

TEST_F(ExifCaptureDatesTest, ReadsNoMoreThanTheFirst200MebibytesAndTheEnd) {
    constexpr std::uintmax_t most = 200 << 20;
    const auto dateAt = [this](std::size_t offset) {
        const std::string path = folder.write("photo", tiff(64, 8).substr(0, 8));
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(4).write(big(offset, 4).data(), 4);
        file.seekp(static_cast<std::streamoff>(offset));
        file << tiff(offset + 38, offset).substr(offset);
        file.close();
        std::filesystem::resize_file(path, most + (10 << 20));
        return dates.captureDate(path);
    };
    EXPECT_EQ(dateAt(most - 38), july(15));
    EXPECT_EQ(dateAt(most + 8), std::nullopt);
}

TEST_F(ExifCaptureDatesTest, DoesNotSearchOnWhereTheClockWasNeverSet) {
    std::string bytes = tiff(5'000'000, 8);
    const std::string exifInTheMiddle = big(0x8769, 2) + big(4, 2) + big(1, 4) + big(2'000'000, 4);
    const std::string unset = "    :  :     :  :  ";
    bytes.replace(8, 50,
                  big(2, 2) + big(0x0132, 2) + big(2, 2) + big(20, 4) + big(38, 4) +
                      exifInTheMiddle + big(0, 4) + unset + '\0');
    const std::string entry = big(0x9003, 2) + big(2, 2) + big(20, 4) + big(2'000'018, 4);
    bytes.replace(2'000'000, 38,
                  big(1, 2) + entry + big(0, 4) + std::string("2024:07:15 12:00:00\0", 20));
    EXPECT_EQ(dateIn(bytes), std::nullopt);
    bytes.replace(10, 2, big(0x010F, 2));  // the maker instead of a date
    EXPECT_EQ(dateIn(bytes), july(15));
}

TEST_F(ExifCaptureDatesTest, ReadsIsoMedia) { EXPECT_EQ(dateIn(isoMedia()), july(15)); }

TEST_F(ExifCaptureDatesTest, ReadsThroughADescriptor) {
    folder.write("photo", testPhoto({{original, "2024:07:15 12:00:00"}}));
    std::FILE* file = std::fopen(folder.path("photo").c_str(), "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(dates.captureDate("/proc/self/fd/" + std::to_string(::fileno(file))), july(15));
    std::fclose(file);
}

TEST_F(ExifCaptureDatesTest, FindsNothingInWhatIsNoPhoto) {
    EXPECT_EQ(dateIn(""), std::nullopt);
    EXPECT_EQ(dateIn("ein Text"), std::nullopt);
    EXPECT_EQ(dateIn("MM"), std::nullopt);
    EXPECT_EQ(dateIn(std::string("\xFF\xD8", 2)), std::nullopt);
    EXPECT_EQ(dates.captureDate(folder.path("missing")), std::nullopt);
    EXPECT_EQ(dates.captureDate(folder.path()), std::nullopt);
}

TEST_F(ExifCaptureDatesTest, TakesDamagedFilesWithoutHarm) {
    const std::vector<std::string> photos{testPhoto({{original, "2024:07:15 12:00:00"}}),
                                          tiff(200, 8), isoMedia()};
    EXPECT_TRUE(rc::check([&] {
        std::string bytes = *rc::gen::elementOf(photos);
        bytes.resize(*rc::gen::inRange<std::size_t>(0, bytes.size() + 1));
        const auto changes = *rc::gen::container<std::map<std::size_t, char>>(
            rc::gen::inRange<std::size_t>(0, 250), rc::gen::arbitrary<char>());
        for (const auto& [at, value] : changes) {
            if (at < bytes.size()) bytes[at] = value;
        }
        folder.write("photo", bytes);
        dates.captureDate(folder.path("photo"));
        RC_ASSERT(tree(folder.path()) == (Tree{{"photo", bytes}}));
    }));
}

TEST_F(ExifCaptureDatesTest, ReadsSeveralAtOnce) {
    constexpr unsigned photos = 20;
    for (unsigned day = 1; day <= photos; ++day) {
        const std::string date = (day < 10 ? "2024:07:0" : "2024:07:") + std::to_string(day);
        folder.write(std::to_string(day), testPhoto({{original, date + " 12:00:00"}}));
    }
    std::atomic<unsigned> right = 0;
    runWorkers(4, [&](std::size_t) {
        for (unsigned day = 1; day <= photos; ++day) {
            if (dates.captureDate(folder.path(std::to_string(day))) == july(day)) ++right;
        }
    });
    EXPECT_EQ(right, 4 * photos);
}

}  // namespace
}  // namespace bildkurier
