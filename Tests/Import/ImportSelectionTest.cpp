// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeCameraFile.h"
#include "ImportSelection.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

std::shared_ptr<CameraFile> file(std::optional<std::string> name, std::int64_t size,
                                 std::optional<Date> shot) {
    auto made = std::make_shared<FakeCameraFile>(nullptr, std::move(name), "");
    made->cameraSize = size;
    made->shot = shot;
    return made;
}

Date at(int seconds) { return Date(std::chrono::seconds(seconds)); }

std::vector<std::string> names(const CameraFiles& files) {
    std::vector<std::string> found;
    for (const auto& file : files) found.push_back(file->name().value_or("–"));
    return found;
}

TEST(SortedByShotDate, PutsUndatedFilesFirstAndKeepsTheOrderOfEqualDates) {
    const CameraFiles sorted = sortedByShotDate({
        file("D", 1, at(2)),
        file("C", 1, at(1)),
        file("B", 1, std::nullopt),
        file("E", 1, at(2)),
        file("A", 1, std::nullopt),
    });
    EXPECT_EQ(names(sorted), (std::vector<std::string>{"B", "A", "C", "D", "E"}));
}

TEST(MissingFiles, KeepsOrderAndSumsSizes) {
    const CameraFiles catalogue = {
        file("A.JPG", 1, at(1)),    file("B.JPG", 20, at(2)),   file(std::nullopt, 300, at(3)),
        file("C.JPG", 4000, at(4)), file("c.jpg", 4000, at(5)), file("D.JPG", 50000, std::nullopt)};
    const ImportSelection all = missingFiles(catalogue, {fileKey("b.jpg", 20)}, std::nullopt);
    EXPECT_EQ(names(all.files), (std::vector<std::string>{"A.JPG", "C.JPG", "D.JPG"}));
    EXPECT_EQ(all.bytes, 54001);

    const ImportSelection late = missingFiles(catalogue, {}, at(2));
    EXPECT_EQ(names(late.files), (std::vector<std::string>{"B.JPG", "C.JPG"}));
    EXPECT_EQ(late.bytes, 4020);
    EXPECT_EQ(late.files[0], catalogue[1]);
}

TEST(SummarizeByType, CountsNamelessFilesToo) {
    const CameraFiles files = {file("A.mov", 1, {}), file("B.CR3", 20, {}),
                               file(std::nullopt, 300, {}), file("C.cr3", 4000, {})};
    EXPECT_EQ(summarizeByType(files),
              (std::vector<TypeSummary>{{"CR3", 2, 4020}, {"MOV", 1, 1}, {"Sonstige", 1, 300}}));
}

}  // namespace
}  // namespace bildkurier
