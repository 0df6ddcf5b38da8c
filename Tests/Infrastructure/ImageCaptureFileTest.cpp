// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeNativeFile.h"
#include "ImageCaptureFile.h"

#include <gtest/gtest.h>

#include <limits>

namespace bildkurier {
namespace {

constexpr Date shotAt{std::chrono::milliseconds(1'000)};
constexpr Date made{std::chrono::milliseconds(2'000)};

TEST(ImageCaptureFile, HasTheNameAndSizeThatTheCameraReports) {
    const ImageCaptureFile named(std::make_shared<FakeNativeFile>(
        FileFacts{.name = "IMG_1.JPG", .size = std::numeric_limits<std::int64_t>::max()}));
    EXPECT_EQ(named.name(), "IMG_1.JPG");
    EXPECT_EQ(named.size(), std::numeric_limits<std::int64_t>::max());
    const ImageCaptureFile nameless(std::make_shared<FakeNativeFile>());
    EXPECT_EQ(nameless.name(), std::nullopt);
    EXPECT_EQ(nameless.size(), 0);
}

TEST(ImageCaptureFile, PrefersTheCaptureTimeToThatOfTheFileSystem) {
    const struct {
        std::optional<Date> created, fileCreated, shotDate;
    } cases[] = {{shotAt, made, shotAt}, {shotAt, {}, shotAt}, {{}, made, made}, {{}, {}, {}}};
    for (const auto& [created, fileCreated, shotDate] : cases) {
        const ImageCaptureFile file(std::make_shared<FakeNativeFile>(
            FileFacts{.name = {}, .created = created, .fileCreated = fileCreated}));
        EXPECT_EQ(file.shotDate(), shotDate);
    }
}

TEST(ImageCaptureFile, TellsThePlannerAllAtOnce) {
    const ImageCaptureFile file(std::make_shared<FakeNativeFile>(
        FileFacts{.name = "IMG_1.JPG", .size = 7, .created = shotAt, .fileCreated = made}));
    EXPECT_EQ(file.candidate(), (ImportCandidate{"IMG_1.JPG", 7, shotAt}));
}

TEST(ImageCaptureFile, KnowsWhatKeepsItFromBeingLoaded) {
    const Error obstacle{"Ordner DCIM ist nicht lesbar"};
    EXPECT_EQ(ImageCaptureFile(
                  std::make_shared<FakeNativeFile>(FileFacts{.name = {}, .obstacle = obstacle}))
                  .obstacle(),
              obstacle);
    EXPECT_TRUE(ImageCaptureFile(
                    std::make_shared<FakeNativeFile>(FileFacts{.name = {}, .obstacle = obstacle}))
                    .candidate()
                    .isObstructed);
    EXPECT_EQ(ImageCaptureFile(std::make_shared<FakeNativeFile>()).obstacle(), std::nullopt);
}

TEST(ImageCaptureFile, LoadsIntoTheGivenFolderOverWhatIsThere) {
    const auto native = std::make_shared<FakeNativeFile>();
    ImageCaptureFile(native).download(Url::file("/ziel ä"), "IMG_1.JPG", [](const auto&) {});
    ASSERT_EQ(native->requests.size(), 1U);
    EXPECT_EQ(native->requests[0].directory, "/ziel ä");
    EXPECT_EQ(native->requests[0].saveAs, "IMG_1.JPG");
    EXPECT_TRUE(native->requests[0].overwrite);
}

TEST(ImageCaptureFile, PassesOnTheAnswerAsItIs) {
    using Answer = Result<std::optional<std::string>>;
    const auto text = [](const Answer& answer) {
        return answer ? answer->value_or("as asked") : "failed: " + answer.error().message;
    };
    const Answer answers[] = {{"IMG_1.JPG"}, {std::nullopt}, failure("Kabel gezogen")};
    std::vector<std::string> received;
    for (const Answer& answer : answers) {
        const auto native = std::make_shared<FakeNativeFile>();
        ImageCaptureFile(native).download(
            Url::file("/ziel"), "X", [&](const Answer& got) { received.push_back(text(got)); });
        native->downloads.at(0)(answer);
    }
    EXPECT_EQ(received,
              (std::vector<std::string>{"IMG_1.JPG", "as asked", "failed: Kabel gezogen"}));
}

}  // namespace
}  // namespace bildkurier
