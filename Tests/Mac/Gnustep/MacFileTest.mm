// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFoundation.h"
#include "FakeImageCapture.h"
#include "MacFile.h"

#include <gtest/gtest.h>

#include <chrono>

namespace bildkurier {
namespace {

using Answer = Result<std::optional<std::string>>;

class MacFileTest : public testing::Test {
protected:
    ICCameraFile* file = [ICCameraFile new];
    FakeItem& fake = fakeOf(file);
    std::shared_ptr<CompletionGate> gate = std::make_shared<CompletionGate>();
    std::vector<std::string> answers;

    void download(const DownloadRequest& request) {
        MacFile(file, gate).download(request, [this](const Answer& answer) {
            answers.push_back(answer ? answer->value_or("as asked")
                                     : "failed: " + answer.error().message);
        });
    }
    id option(ICDownloadOption name) { return [fake.options objectForKey:name]; }
};

TEST_F(MacFileTest, HasTheFactsOfTheFileEachInItsPlace) {
    fake.name = @"IMG_Ä.CR3";
    fake.size = 5'000'000'000;
    fake.created = [NSDate dateWithTimeIntervalSince1970:1.25];
    fake.fileCreated = [NSDate dateWithTimeIntervalSince1970:-99];
    const FileFacts facts = MacFile(file, gate).facts();
    EXPECT_EQ(facts.name, "IMG_Ä.CR3");
    EXPECT_EQ(facts.size, 5'000'000'000);
    EXPECT_EQ(facts.created, Date(std::chrono::milliseconds(1250)));
    EXPECT_EQ(facts.fileCreated, Date(std::chrono::seconds(-99)));
}

TEST_F(MacFileTest, HasNoFactsThatTheFileLacks) {
    const FileFacts facts = MacFile(file, gate).facts();
    EXPECT_EQ(facts.name, std::nullopt);
    EXPECT_EQ(facts.size, 0);
    EXPECT_EQ(facts.created, std::nullopt);
    EXPECT_EQ(facts.fileCreated, std::nullopt);
}

TEST_F(MacFileTest, RoundsTimesToTheMillisecond) {
    fake.created = [NSDate dateWithTimeIntervalSince1970:1700000000.4996];
    EXPECT_EQ(MacFile(file, gate).facts().created,
              Date(std::chrono::milliseconds(1'700'000'000'500)));
}

TEST_F(MacFileTest, KeepsANameWithAZeroByteWhole) {
    const unichar letters[] = {'A', 0, 'B'};
    fake.name = [NSString stringWithCharacters:letters length:3];
    EXPECT_EQ(MacFile(file, gate).facts().name, std::string("A\0B", 3));
}

TEST_F(MacFileTest, AsksForExactlyTheFolderTheNameAndReplacing) {
    download({.directory = "/ziel ä", .saveAs = "IMG_Ä.CR3", .overwrite = true});
    EXPECT_EQ([fake.options count], 3U);
    EXPECT_TRUE([option(ICDownloadsDirectoryURL) isKindOfClass:[NSURL class]]);
    EXPECT_STREQ([option(ICDownloadsDirectoryURL) fileSystemRepresentation], "/ziel ä");
    EXPECT_TRUE([option(ICSaveAsFilename) isEqual:@"IMG_Ä.CR3"]);
    EXPECT_TRUE([option(ICOverwrite) boolValue]);
    download({.directory = "/ziel", .saveAs = "X", .overwrite = false});
    EXPECT_FALSE([option(ICOverwrite) boolValue]);
}

TEST_F(MacFileTest, PassesOnTheAnswerAsItIs) {
    const DownloadRequest request{.directory = "/ziel", .saveAs = "X", .overwrite = true};
    fake.saved = @"X.CR3";
    download(request);
    fake.saved = nil;
    download(request);
    fake.saved = @"X.CR3";
    fake.error = [NSError errorWithDomain:@"Test"
                                     code:1
                                 userInfo:@{NSLocalizedDescriptionKey : @"Kabel gezogen"}];
    download(request);
    fake.error = [NSError errorWithDomain:@"Test"
                                     code:1
                                 userInfo:@{NSLocalizedDescriptionKey : @""}];
    download(request);
    EXPECT_EQ(answers, (std::vector<std::string>{"X.CR3", "as asked", "failed: Kabel gezogen",
                                                 "failed: Unbekannter Fehler"}));
}

TEST_F(MacFileTest, PassesOnNoAnswerAfterTheEnd) {
    gate->close();
    download({.directory = "/ziel", .saveAs = "X", .overwrite = true});
    EXPECT_EQ(answers, std::vector<std::string>());
}

TEST_F(MacFileTest, RefusesANameThatIsNoText) {
    download({.directory = "/ziel", .saveAs = "\xFF.CR3", .overwrite = true});
    EXPECT_EQ(answers, std::vector<std::string>{"failed: Der Dateiname ist kein gültiger Text."});
    EXPECT_EQ(fake.options, nil);
}

}  // namespace
}  // namespace bildkurier
