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

TEST(Candidates, SayWhatTheFilesSay) {
    EXPECT_EQ(candidates(CameraFiles{file("A.JPG", 1, at(1)), file(std::nullopt, 20, {})}),
              (std::vector<ImportCandidate>{{"A.JPG", 1, at(1)}, {std::nullopt, 20, {}}}));
}

TEST(SelectFiles, KeepsOrderAndSumsSizes) {
    const CameraFiles catalogue = {file("A.JPG", 1, at(1)), file("B.JPG", 20, at(2)),
                                   file(std::nullopt, 300, at(3)), file("D.JPG", 4000, {})};
    const ImportSelection some =
        selectFiles(catalogue, candidates(catalogue), std::vector<std::size_t>{0, 1, 3});
    EXPECT_EQ(some.files, (CameraFiles{catalogue[0], catalogue[1], catalogue[3]}));
    EXPECT_EQ(some.bytes, 4021);
    EXPECT_EQ(selectFiles(catalogue, candidates(catalogue), {}).files, CameraFiles());
}

TEST(SelectFiles, SumsUpTypesAndCountsNamelessFilesToo) {
    const CameraFiles catalogue = {file("A.mov", 1, {}), file("B.CR3", 20, {}),
                                   file(std::nullopt, 300, {}), file("C.cr3", 4000, {}),
                                   file("D.WAV", 50000, {})};
    const ImportSelection some =
        selectFiles(catalogue, candidates(catalogue), std::vector<std::size_t>{0, 1, 2, 3});
    EXPECT_EQ(some.byType,
              (std::vector<TypeSummary>{{"CR3", 2, 4020}, {"MOV", 1, 1}, {"Sonstige", 1, 300}}));
}

}  // namespace
}  // namespace bildkurier
