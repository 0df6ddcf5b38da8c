// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SampleCard.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Written once, because all tests only look at it.
class SampleCardTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder() = std::make_unique<TemporaryFolder>();
        SampleCard(folder()->path()).write();
    }
    static void TearDownTestSuite() { folder().reset(); }

    static std::unique_ptr<TemporaryFolder>& folder() {
        static std::unique_ptr<TemporaryFolder> card;
        return card;
    }

    static std::vector<fs::path> filesWith(const std::set<std::string>& extensions) {
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder()->path())) {
            const bool hidden = entry.path().filename().string().starts_with('.');
            if (!hidden && extensions.contains(entry.path().extension())) {
                found.push_back(entry.path());
            }
        }
        return found;
    }
};

std::string localTimeOf(const fs::path& path) {
    struct stat facts{};
    if (stat(path.c_str(), &facts) != 0) return "";
    std::tm parts{};
    localtime_r(&facts.st_mtim.tv_sec, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y:%m:%d %H:%M:%S", &parts)};
}

TEST_F(SampleCardTest, HoldsWhatACardHoldsAfterASummer) {
    std::map<std::string, int> count;
    for (const auto& [path, contents] : tree(folder()->path())) {
        if (!path.ends_with('/')) ++count[fs::path(path).extension()];
    }
    const std::map<std::string, int> expected = {
        {".AVI", 2}, {".CTG", 1}, {".JPG", 25}, {".THM", 2}, {".TIF", 3}, {".WAV", 2}, {".XMP", 2}};
    EXPECT_EQ(count, expected);
    EXPECT_TRUE(fs::exists(folder()->path("DCIM/100BILDK/._IMG_0001.JPG")));
}

TEST_F(SampleCardTest, GivesEveryFileANameOfItsOwn) {
    std::set<std::string> names;
    for (const auto& [path, contents] : tree(folder()->path())) {
        if (path.ends_with('/')) continue;
        EXPECT_TRUE(names.insert(fs::path(path).filename()).second) << path;
    }
}

TEST_F(SampleCardTest, HasPicturesWithTheDateOfTheirFileInThem) {
    std::set<std::string> days;
    const auto pictures = filesWith({".JPG", ".TIF"});
    ASSERT_EQ(pictures.size(), 27U);
    for (const auto& path : pictures) {
        const auto image = Exiv2::ImageFactory::open(path.string());
        image->readMetadata();
        EXPECT_GE(image->pixelWidth(), 320) << path;
        const auto captured = image->exifData()["Exif.Photo.DateTimeOriginal"].toString();
        EXPECT_EQ(captured, localTimeOf(path)) << path;
        days.insert(captured.substr(0, 10));
    }
    EXPECT_EQ(days.size(), 6U);
}

TEST_F(SampleCardTest, HasFilmsAndSoundsThatEndWhereTheySay) {
    const auto paths = filesWith({".AVI", ".WAV"});
    ASSERT_EQ(paths.size(), 4U);
    const Tree all = tree(folder()->path());
    for (const auto& path : paths) {
        const std::string& file = all.at(path.lexically_relative(folder()->path()));
        ASSERT_EQ(file.substr(0, 4), "RIFF") << path;
        std::uint32_t size = 0;
        std::memcpy(&size, file.data() + 4, sizeof size);
        EXPECT_EQ(size + 8, file.size()) << path;
    }
}

TEST_F(SampleCardTest, IsTheSameEveryTime) {
    const TemporaryFolder again;
    SampleCard(again.path()).write();
    EXPECT_TRUE(tree(again.path()) == tree(folder()->path()));
}

}  // namespace
}  // namespace bildkurier
