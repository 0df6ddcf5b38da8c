// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStore.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace bildkurier {
namespace {

/// A store that knows only what exists.
class NamesOnly final : public FileStore {
public:
    std::set<std::string> paths;
    int questions = 0;

    bool fileExists(const Url& url) override {
        ++questions;
        return paths.contains(url.path);
    }

    Url stagingDirectory(const Url& destination) override { return destination; }
    FileListing listing(const Url&) override { return {}; }
    std::optional<std::int64_t> fileSize(const Url&) override { return {}; }
    bool isWritableDirectory(const Url&) override { return false; }
    bool isNetworkVolume(const Url&) override { return false; }
    std::optional<std::int64_t> availableCapacity(const Url&) override { return {}; }
    Result<> createDirectory(const Url&) override { return {}; }
    Result<> moveItem(const Url&, const Url&) override { return {}; }
    void removeItem(const Url&) override {}
};

NamesOnly storeWith(const std::set<std::string>& names, const std::string& folder) {
    NamesOnly store;
    for (const auto& name : names) store.paths.insert(Url::file(folder).appending(name).path);
    return store;
}

std::string freeNameAmong(const std::string& wish, const std::set<std::string>& taken) {
    return storeWith(taken, "/Bilder").freeName(wish, Url::file("/Bilder"));
}

TEST(FreeName, CountsUpFromTheNameAsGiven) {
    const struct {
        std::string wish;
        std::set<std::string> taken;
        std::string name;
    } cases[] = {
        {"IMG_1.JPG", {}, "IMG_1.JPG"},
        {"IMG_1.JPG", {"IMG_2.JPG", "IMG_1_1.JPG"}, "IMG_1.JPG"},
        {"IMG_1.JPG", {"IMG_1.JPG"}, "IMG_1_1.JPG"},
        {"IMG_1.JPG", {"IMG_1.JPG", "IMG_1_1.JPG"}, "IMG_1_2.JPG"},
        {"IMG_1.JPG", {"IMG_1.JPG", "IMG_1_2.JPG"}, "IMG_1_1.JPG"},
        {"IMG_1_1.JPG", {"IMG_1_1.JPG"}, "IMG_1_1_1.JPG"},
        {"IMG_1.JpG", {"IMG_1.JpG"}, "IMG_1_1.JpG"},
        {"a.b.cr3", {"a.b.cr3"}, "a.b_1.cr3"},
        {"clip", {"clip"}, "clip_1"},
        {"clip", {"clip", "clip_1"}, "clip_2"},
        {"clip.", {"clip."}, "clip._1"},
        {".bashrc", {".bashrc"}, "_1.bashrc"},
        {"\xC4.\xD6", {"\xC4.\xD6"}, "\xC4_1.\xD6"},
    };
    for (const auto& [wish, taken, name] : cases) EXPECT_EQ(freeNameAmong(wish, taken), name);
}

TEST(FreeName, CountsAsFarAsItMust) {
    std::set<std::string> taken = {"A.JPG"};
    for (int n = 1; n <= 1234; ++n) taken.insert("A_" + std::to_string(n) + ".JPG");
    EXPECT_EQ(freeNameAmong("A.JPG", taken), "A_1235.JPG");
}

TEST(FreeName, LooksOnlyIntoTheFolder) {
    NamesOnly store = storeWith({"A.JPG"}, "/Bilder/2024-05-09");
    EXPECT_EQ(store.freeName("A.JPG", Url::file("/Bilder")), "A.JPG");
    EXPECT_EQ(store.freeName("A.JPG", Url::file("/Bilder/2024-05-09/")), "A_1.JPG");
}

TEST(FreeName, AsksOnceForANameThatIsFree) {
    NamesOnly store;
    EXPECT_EQ(store.freeName("A.JPG", Url::file("/Bilder")), "A.JPG");
    EXPECT_EQ(store.questions, 1);
}

RC_GTEST_PROP(FreeName, IsTheFirstOfItsSeriesThatIsNotTaken, ()) {
    const auto base = *rc::gen::element<std::string>("A", "A_1", "_", "ä b");
    const auto extension = *rc::gen::element<std::string>("", ".JPG", ".x");
    std::vector<std::string> series(1, base + extension);
    for (int n = 1; n <= 10; ++n) {
        series.push_back(base);
        series.back().append("_").append(std::to_string(n)).append(extension);
    }
    auto taken = *rc::gen::container<std::set<std::string>>(rc::gen::elementOf(series));
    taken.erase(series.back());
    const auto first = std::ranges::find_if(
        series, [&](const std::string& name) { return !taken.contains(name); });
    RC_ASSERT(freeNameAmong(series.front(), taken) == *first);
}

}  // namespace
}  // namespace bildkurier
