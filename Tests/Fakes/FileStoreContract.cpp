// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStoreContract.h"

namespace bildkurier {

void FileStoreContract::SetUp() {
    if (!stand_) GTEST_SKIP() << "Hier fehlt, was dieser Ablageort braucht";
}

void FileStoreContract::makeFolder(const Url& folder) {
    const auto made = store().createDirectory(folder);
    ASSERT_TRUE(made) << made.error().message;
}

Url FileStoreContract::stage(const std::string& contents) {
    const Url staging = store().stagingDirectory(destination());
    const auto made = stagingStore().createDirectory(staging);
    EXPECT_TRUE(made) << made.error().message;
    const Url file = staging.appending("staged");
    write(file, contents);
    return file;
}

void FileStoreContract::bring(std::string_view relative, const std::string& contents) {
    const auto slash = relative.rfind('/');
    if (slash != std::string_view::npos) makeFolder(at(relative.substr(0, slash)));
    const auto moved = store().moveItem(stage(contents), at(relative));
    ASSERT_TRUE(moved) << moved.error().message;
}

std::string storeName(const testing::TestParamInfo<FileStoreMaker>& info) {
    return info.param.name;
}

TEST_P(FileStoreContract, NamesAStagingFolderWithoutMakingIt) {
    const Url staging = store().stagingDirectory(destination());
    EXPECT_NE(staging, destination());
    EXPECT_FALSE(stagingStore().fileExists(staging));
    EXPECT_EQ(store().stagingDirectory(destination()), staging);
}

TEST_P(FileStoreContract, FindsNoOtherPathToAFolderWithoutLinks) {
    ASSERT_TRUE(store().createDirectory(at("bilder")));
    const Url folder = store().resolved(at("bilder"));
    EXPECT_TRUE(folder.path.ends_with("/bilder")) << folder.path;
    EXPECT_EQ(folder.scheme, at("bilder").scheme);
    EXPECT_EQ(store().resolved(folder), folder);
    EXPECT_EQ(store().resolved(folder.appending("noch/keiner")), folder.appending("noch/keiner"));
}

TEST_P(FileStoreContract, NeverCountsWhatIsBeingStaged) {
    const Url staged = stage("half a picture");
    EXPECT_EQ(contents(staged), "half a picture");
    EXPECT_EQ(store().existingFileKeys(destination()), FileKeys{});
}

TEST_P(FileStoreContract, HasNoKeysForAnEmptyFolder) {
    makeFolder(at("JPG"));
    EXPECT_EQ(store().existingFileKeys(destination()), FileKeys{});
}

TEST_P(FileStoreContract, HasNoKeysForWhatIsNoFolder) {
    bring("IMG_1.JPG", "one");
    EXPECT_EQ(store().existingFileKeys(at("missing")), FileKeys{});
    EXPECT_EQ(store().existingFileKeys(at("missing/deeper")), FileKeys{});
    EXPECT_EQ(store().existingFileKeys(at("IMG_1.JPG")), FileKeys{});
}

TEST_P(FileStoreContract, FindsKeysAtAnyDepth) {
    bring("IMG_1.JPG", "one");
    bring("2024-05-09/IMG_2.JPG", "second");
    bring("2024-05-09/CR3/IMG_0412.CR3", "a raw picture");
    bring("2024-05-10/empty.MP4", "");
    EXPECT_EQ(store().existingFileKeys(destination()),
              (FileKeys{"img_1.jpg|3", "img_2.jpg|6", "img_0412.cr3|13", "empty.mp4|0"}));
    EXPECT_EQ(store().existingFileKeys(at("2024-05-09")),
              (FileKeys{"img_2.jpg|6", "img_0412.cr3|13"}));
}

TEST_P(FileStoreContract, KnowsThatAWholeListLacksNothing) {
    bring("2024-05-09/IMG_1.JPG", "one");
    makeFolder(at("JPG"));
    for (const Url& folder : {destination(), at("JPG"), at("missing")}) {
        EXPECT_EQ(store().listing(folder).trouble, std::nullopt) << folder.path;
        EXPECT_TRUE(store().admitsFiles(folder)) << folder.path;
    }
}

TEST_P(FileStoreContract, FindsOneKeyForEqualFilesInTwoFolders) {
    bring("a/IMG_1.JPG", "one");
    bring("b/img_1.jpg", "two");
    bring("c/IMG_1.JPG", "three");
    EXPECT_EQ(store().existingFileKeys(destination()), (FileKeys{"img_1.jpg|3", "img_1.jpg|5"}));
}

TEST_P(FileStoreContract, LeavesOutHiddenFilesAndWhatIsInHiddenFolders) {
    bring("IMG_1.JPG", "one");
    bring("JPG/IMG_2.JPG", "two");
    makeFolder(at(".cache/JPG"));
    makeFolder(at("JPG/.hidden"));
    write(at(".DS_Store"), "x");
    write(at("._IMG_1.JPG"), "x");
    write(at(".cache/a.jpg"), "x");
    write(at(".cache/JPG/b.jpg"), "x");
    write(at("JPG/.c.jpg"), "x");
    write(at("JPG/.hidden/d.jpg"), "x");
    EXPECT_EQ(store().existingFileKeys(destination()), (FileKeys{"img_1.jpg|3", "img_2.jpg|3"}));
}

TEST_P(FileStoreContract, LooksIntoAHiddenFolderThatIsAskedFor) {
    makeFolder(at(".archive"));
    write(at(".archive/IMG_1.JPG"), "one");
    EXPECT_EQ(store().existingFileKeys(at(".archive")), FileKeys{"img_1.jpg|3"});
}

TEST_P(FileStoreContract, TakesNamesAsTheyAre) {
    for (const std::string name :
         {"Übung 1.JPG", "a b  c.jpg", "-rf", "100%.jpg", "a\\b.jpg", "\"quoted\"", "*?[x]",
          "#~;&|", "[x] 'y'", "no utf-8 \xFF\xC0"}) {
        const std::string file = "odd/" + name;
        bring(file, "contents");
        EXPECT_TRUE(store().fileExists(at(file))) << file;
        EXPECT_EQ(store().fileSize(at(file)), 8) << file;
        EXPECT_EQ(contents(at(file)), "contents") << file;
        // A store that cannot tell whether a name was written in another way takes both.
        EXPECT_TRUE(store().existingFileKeys(at("odd")).contains(fileKey(name, 8))) << file;
        store().removeItem(at(file));
    }
}

TEST_P(StrictFileStoreContract, TakesLineBreaksForPartsOfNames) {
    bring("line\nfeed", "contents");
    EXPECT_EQ(contents(at("line\nfeed")), "contents");
    EXPECT_EQ(store().existingFileKeys(destination()), FileKeys{"line\nfeed|8"});
}

TEST_P(FileStoreContract, IgnoresASlashAtTheEndOfAFolder) {
    makeFolder(at("JPG/"));
    bring("JPG/IMG_1.JPG", "one");
    EXPECT_TRUE(store().fileExists(at("JPG/")));
    EXPECT_TRUE(store().isWritableDirectory(at("JPG/")));
    EXPECT_EQ(store().existingFileKeys(at("JPG/")), FileKeys{"img_1.jpg|3"});
    store().removeItem(at("JPG/IMG_1.JPG"));
    store().removeItem(at("JPG/"));
    EXPECT_FALSE(store().fileExists(at("JPG")));
}

TEST_P(FileStoreContract, KnowsWhatExists) {
    bring("JPG/IMG_1.JPG", "one");
    EXPECT_TRUE(store().fileExists(destination()));
    EXPECT_TRUE(store().fileExists(at("JPG")));
    EXPECT_TRUE(store().fileExists(at("JPG/IMG_1.JPG")));
    EXPECT_FALSE(store().fileExists(at("JPG/IMG_2.JPG")));
    EXPECT_FALSE(store().fileExists(at("JPG/IMG_1.JP")));
    EXPECT_FALSE(store().fileExists(at("JPG/IMG_1.JPG/deeper")));
    EXPECT_FALSE(store().fileExists(at("CR3/IMG_1.JPG")));
}

TEST_P(FileStoreContract, MeasuresFiles) {
    bring("IMG_1.JPG", "seven b");
    bring("empty", "");
    EXPECT_EQ(store().fileSize(at("IMG_1.JPG")), 7);
    EXPECT_EQ(store().fileSize(at("empty")), 0);
    EXPECT_EQ(store().fileSize(at("missing")), std::nullopt);
    EXPECT_EQ(store().fileSize(at("IMG_1.JPG/deeper")), std::nullopt);
    EXPECT_EQ(store().fileSize(destination()), std::nullopt);
}

TEST_P(FileStoreContract, MeasuresAFileThatIsBeingStaged) {
    const Url staged = stage("some");
    EXPECT_EQ(stagingStore().fileSize(staged), 4);
    write(staged, "some more");
    EXPECT_EQ(stagingStore().fileSize(staged), 9);
}

TEST_P(FileStoreContract, MayWriteIntoExistingFoldersOnly) {
    bring("IMG_1.JPG", "one");
    EXPECT_TRUE(store().isWritableDirectory(destination()));
    EXPECT_FALSE(store().isWritableDirectory(at("IMG_1.JPG")));
    EXPECT_FALSE(store().isWritableDirectory(at("missing")));
}

TEST_P(FileStoreContract, TakesAFolderThatIsMissingForLocal) {
    EXPECT_FALSE(store().isNetworkVolume(at("missing")));
}

TEST_P(FileStoreContract, KnowsNoCapacityWhereNothingIs) {
    EXPECT_EQ(store().availableCapacity(at("missing")), std::nullopt);
    EXPECT_EQ(store().availableCapacity(at("missing/deeper")), std::nullopt);
}

TEST_P(FileStoreContract, MakesAFolderWithAllAboveIt) {
    const auto made = store().createDirectory(at("2024-05-09/CR3/deeper"));
    ASSERT_TRUE(made) << made.error().message;
    for (const auto folder : {"2024-05-09", "2024-05-09/CR3", "2024-05-09/CR3/deeper"})
        EXPECT_TRUE(store().isWritableDirectory(at(folder))) << folder;
}

TEST_P(FileStoreContract, LeavesAFolderThatExistsAsItIs) {
    bring("JPG/IMG_1.JPG", "one");
    EXPECT_TRUE(store().createDirectory(at("JPG")));
    EXPECT_TRUE(store().createDirectory(destination()));
    EXPECT_EQ(contents(at("JPG/IMG_1.JPG")), "one");
}

TEST_P(FileStoreContract, MakesNoFolderWhereAFileIs) {
    bring("JPG", "a file");
    for (const auto folder : {"JPG", "JPG/2024", "JPG/2024/deeper"}) {
        const auto made = store().createDirectory(at(folder));
        ASSERT_FALSE(made) << folder;
        EXPECT_NE(made.error().message, "");
        EXPECT_EQ(contents(at("JPG")), "a file");
    }
}

TEST_P(FileStoreContract, MovesAFile) {
    for (const std::string& picture :
         {std::string(), std::string(3'000'000, 'x'), std::string("\0\r\n\xFF", 4)}) {
        const Url staged = stage(picture);
        const auto moved = store().moveItem(staged, at("IMG_1.JPG"));
        ASSERT_TRUE(moved) << moved.error().message;
        EXPECT_TRUE(contents(at("IMG_1.JPG")) == picture);
        EXPECT_FALSE(stagingStore().fileExists(staged));
        store().removeItem(at("IMG_1.JPG"));
    }
}

TEST_P(StrictFileStoreContract, NeverReplacesAFile) {
    bring("IMG_1.JPG", "old");
    const Url staged = stage("new picture");
    const auto moved = store().moveItem(staged, at("IMG_1.JPG"));
    ASSERT_FALSE(moved);
    EXPECT_NE(moved.error().message, "");
    EXPECT_EQ(contents(at("IMG_1.JPG")), "old");
    EXPECT_EQ(contents(staged), "new picture");
}

TEST_P(FileStoreContract, NeverReplacesAFolder) {
    makeFolder(at("empty"));
    const Url staged = stage("new picture");
    EXPECT_FALSE(store().moveItem(staged, at("empty")));
    EXPECT_TRUE(store().isWritableDirectory(at("empty")));
    EXPECT_EQ(contents(staged), "new picture");
    EXPECT_FALSE(store().fileExists(at("empty/staged")));
}

TEST_P(FileStoreContract, MovesNothingThatIsMissing) {
    const Url staged = stage("picture");
    stagingStore().removeItem(staged);
    const auto moved = store().moveItem(staged, at("IMG_1.JPG"));
    ASSERT_FALSE(moved);
    EXPECT_NE(moved.error().message, "");
    EXPECT_FALSE(store().fileExists(at("IMG_1.JPG")));
}

TEST_P(FileStoreContract, MovesNothingIntoAFolderThatIsMissing) {
    const Url staged = stage("picture");
    EXPECT_FALSE(store().moveItem(staged, at("missing/IMG_1.JPG")));
    EXPECT_EQ(contents(staged), "picture");
    EXPECT_FALSE(store().fileExists(at("missing")));
}

TEST_P(FileStoreContract, RemovesAFile) {
    bring("IMG_1.JPG", "one");
    bring("IMG_1.JPG.xmp", "settings");
    store().removeItem(at("IMG_1.JPG"));
    EXPECT_FALSE(store().fileExists(at("IMG_1.JPG")));
    EXPECT_EQ(contents(at("IMG_1.JPG.xmp")), "settings");
}

TEST_P(StrictFileStoreContract, RemovesAWholeTree) {
    bring("2024/JPG/IMG_1.JPG", "one");
    bring("2024/IMG_2.JPG", "two");
    bring("2024b/IMG_3.JPG", "three");
    makeFolder(at("2024/.hidden/empty"));
    store().removeItem(at("2024"));
    EXPECT_FALSE(store().fileExists(at("2024")));
    EXPECT_EQ(contents(at("2024b/IMG_3.JPG")), "three");
}

TEST_P(FileStoreContract, RemovesAnEmptyFolder) {
    makeFolder(at("2024/JPG"));
    store().removeItem(at("2024/JPG"));
    EXPECT_FALSE(store().fileExists(at("2024/JPG")));
    EXPECT_TRUE(store().fileExists(at("2024")));
}

TEST_P(FileStoreContract, RemovesNothingThatIsMissing) {
    bring("IMG_1.JPG", "one");
    store().removeItem(at("missing"));
    store().removeItem(at("missing/deeper"));
    store().removeItem(at("IMG_1.JPG/deeper"));
    EXPECT_EQ(contents(at("IMG_1.JPG")), "one");
}

TEST_P(FileStoreContract, FindsAFreeName) {
    const struct {
        std::string wish;
        std::vector<std::string> taken;
        std::string name;
    } cases[] = {
        {"IMG_0412.JPG", {}, "IMG_0412.JPG"},
        {"IMG_0412.JPG", {"IMG_0412.JPG"}, "IMG_0412_1.JPG"},
        {"IMG_0412.JPG", {"IMG_0412.JPG", "IMG_0412_1.JPG"}, "IMG_0412_2.JPG"},
        {"IMG_0412.JPG", {"IMG_0412_1.JPG"}, "IMG_0412.JPG"},
        {"IMG_0412.JPG", {"IMG_0412.JPG", "IMG_0412_2.JPG"}, "IMG_0412_1.JPG"},
        {"clip", {"clip"}, "clip_1"},
        {"clip", {"clip", "clip_1", "clip_2"}, "clip_3"},
        {"a.tar.GZ", {"a.tar.GZ"}, "a.tar_1.GZ"},
        {"bytes \xFF.JPG", {"bytes \xFF.JPG"}, "bytes \xFF_1.JPG"},
    };
    std::string folder = "JPG";
    for (const auto& [wish, taken, name] : cases) {
        folder += "x";
        makeFolder(at(folder));
        for (const auto& other : taken) bring(folder + "/" + other, "other");
        EXPECT_EQ(store().freeName(wish, at(folder)), name) << wish;
    }
}

TEST_P(FileStoreContract, TakesAFolderForATakenName) {
    makeFolder(at("IMG_1.JPG"));
    EXPECT_EQ(store().freeName("IMG_1.JPG", destination()), "IMG_1_1.JPG");
}

TEST_P(FileStoreContract, FindsEveryNameFreeInAFolderThatIsMissing) {
    EXPECT_EQ(store().freeName("IMG_1.JPG", at("missing")), "IMG_1.JPG");
}

TEST_P(FileStoreContract, CountsFreeNamesWithoutEnd) {
    makeFolder(at("JPG"));
    write(at("JPG/IMG.JPG"), "0");
    for (int n = 1; n < 12; ++n) write(at("JPG/IMG_" + std::to_string(n) + ".JPG"), "x");
    EXPECT_EQ(store().freeName("IMG.JPG", at("JPG")), "IMG_12.JPG");
}

}  // namespace bildkurier
