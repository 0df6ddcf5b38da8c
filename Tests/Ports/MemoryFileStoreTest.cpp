// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FailingFileStore.h"
#include "FileStoreContract.h"
#include "MemoryFileStore.h"

#include <gtest/gtest.h>

namespace bildkurier {

namespace {

class MemoryStand final : public FileStoreStand {
public:
    explicit MemoryStand(bool ignoresCase, bool wrapped = false)
        : memory_(std::make_shared<MemoryFileStore>(ignoresCase)),
          wrapper_(memory_),
          wrapped_(wrapped) {
        memory_->folders.insert("/dest");
    }

    FileStore& store() override { return wrapped_ ? static_cast<FileStore&>(wrapper_) : *memory_; }
    Url destination() override { return Url::file("/dest"); }
    void write(const Url& file, const std::string& contents) override {
        memory_->files[file.path] = contents;
    }
    std::optional<std::string> contents(const Url& file) override {
        const auto found = memory_->files.find(file.path);
        if (found == memory_->files.end()) return {};
        return found->second;
    }

private:
    std::shared_ptr<MemoryFileStore> memory_;
    FailingFileStore wrapper_;
    bool wrapped_;
};

const FileStoreMaker makers[] = {
    {"Memory", [] { return std::make_unique<MemoryStand>(false); }},
    {"MemoryIgnoringCase", [] { return std::make_unique<MemoryStand>(true); }},
    {"FailingNever", [] { return std::make_unique<MemoryStand>(false, true); }},
};

INSTANTIATE_TEST_SUITE_P(Fakes, FileStoreContract, testing::ValuesIn(makers), storeName);
INSTANTIATE_TEST_SUITE_P(Fakes, StrictFileStoreContract, testing::ValuesIn(makers), storeName);

}  // namespace

TEST(MemoryFileStore, ShowsATreeAsADiskDoes) {
    MemoryFileStore store;
    ASSERT_TRUE(store.createDirectory(Url::file("/dest/2024/JPG")));
    store.files["/dest/2024/IMG_1.JPG"] = "one";
    EXPECT_EQ(store.tree(Url::file("/dest")),
              (Tree{{"2024/", ""}, {"2024/JPG/", ""}, {"2024/IMG_1.JPG", "one"}}));
}

TEST(MemoryFileStore, TellsCasesApartOnlyOnRequest) {
    for (const bool ignoresCase : {false, true}) {
        MemoryFileStore store(ignoresCase);
        ASSERT_TRUE(store.createDirectory(Url::file("/Jpg")));
        store.files["/Jpg/img_1.jpg"] = "one";
        EXPECT_EQ(store.fileExists(Url::file("/JPG/IMG_1.JPG")), ignoresCase);
        EXPECT_EQ(store.freeName("IMG_1.JPG", Url::file("/JPG")),
                  ignoresCase ? "IMG_1_1.JPG" : "IMG_1.JPG");
        ASSERT_TRUE(store.createDirectory(Url::file("/JPG/new")));
        EXPECT_EQ(store.folders.contains("/Jpg/new"), ignoresCase);
        EXPECT_EQ(store.tree(Url::file("/Jpg")).contains("new/"), ignoresCase);
        store.removeItem(Url::file("/JPG"));
        EXPECT_EQ(store.files.empty(), ignoresCase);
    }
}

TEST(FailingFileStore, FailsTheCallAskedForOnceOrForGood) {
    for (const bool forGood : {false, true}) {
        const auto memory = std::make_shared<MemoryFileStore>();
        FailingFileStore store(memory);
        store.failAt = 1;
        store.forGood = forGood;
        EXPECT_TRUE(store.createDirectory(Url::file("/a")));
        const auto second = store.createDirectory(Url::file("/b"));
        ASSERT_FALSE(second);
        EXPECT_EQ(second.error(), store.error);
        EXPECT_EQ(store.createDirectory(Url::file("/c")).has_value(), !forGood);
        store.removeItem(Url::file("/a"));
        EXPECT_EQ(memory->folders.contains("/a"), forGood);
        EXPECT_FALSE(memory->folders.contains("/b"));
        EXPECT_EQ(store.calls, 4);
    }
}

TEST(FailingFileStore, CanFailAfterTheChange) {
    const auto memory = std::make_shared<MemoryFileStore>();
    memory->files["/staged"] = "one";
    FailingFileStore store(memory);
    store.failAt = 0;
    store.failsAfterwards = true;
    EXPECT_FALSE(store.moveItem(Url::file("/staged"), Url::file("/IMG_1.JPG")));
    EXPECT_EQ(memory->tree(Url::file("/")), (Tree{{"IMG_1.JPG", "one"}}));
}

TEST(FailingFileStore, LetsQueriesFailOnRequest) {
    const auto memory = std::make_shared<MemoryFileStore>();
    memory->files["/IMG_1.JPG"] = "one";
    memory->isNetwork = true;
    const Url root = Url::file("/");
    const Url file = Url::file("/IMG_1.JPG");
    FailingFileStore store(memory);
    store.failAt = 0;
    store.forGood = true;
    EXPECT_TRUE(store.fileExists(file));
    EXPECT_EQ(store.calls, 0);
    store.queriesCount = true;
    EXPECT_FALSE(store.fileExists(file));
    EXPECT_EQ(store.fileSize(file), std::nullopt);
    EXPECT_EQ(store.existingFileKeys(root), FileKeys{});
    EXPECT_FALSE(store.isWritableDirectory(root));
    EXPECT_FALSE(store.isNetworkVolume(root));
    EXPECT_EQ(store.availableCapacity(root), std::nullopt);
    EXPECT_EQ(store.calls, 6);
}

}  // namespace bildkurier
