// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileKey.h"
#include "FileName.h"
#include "ProofGroups.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>

namespace bildkurier {
namespace {

using Kind = Proof::Kind;

/// A file with a name and contents, on the card or, by its path, at the destination.
struct Sample {
    std::string name;
    std::string contents;
};

std::vector<ImportCandidate> onCard(const std::vector<Sample>& files) {
    std::vector<ImportCandidate> found;
    for (const auto& [name, contents] : files)
        found.push_back({.name = name, .size = std::ssize(contents), .shotDate = {}});
    return found;
}

std::vector<ContentReader::File> atDestination(const std::vector<Sample>& files) {
    std::vector<ContentReader::File> found;
    for (const auto& [path, contents] : files)
        found.push_back(
            {.place = {.folder = Url::file("/dest"), .path = path}, .size = std::ssize(contents)});
    return found;
}

/// What is found of each file of the card.
std::vector<Kind> kinds(const std::vector<Sample>& card, const std::vector<Sample>& destination,
                        bool byContent = true) {
    std::vector<Kind> found(card.size());
    const auto groups = proofGroups(onCard(card), atDestination(destination));
    for (const auto& group : groups) {
        const auto proofs = byContent
                                ? proved(group,
                                         [&](std::size_t a, std::size_t b) -> Result<bool> {
                                             return card[a].contents == destination[b].contents;
                                         })
                                : provedByKey(group);
        for (std::size_t n = 0; n < proofs.size(); ++n)
            found[group.members[n].position] = proofs[n].kind;
    }
    return found;
}

TEST(NameBehindFreeName, IsTheNameThatWasTaken) {
    const struct {
        std::string name;
        std::optional<std::string> behind;
    } cases[] = {{"IMG_1_2.JPG", "IMG_1.JPG"},
                 {"IMG_1.JPG", "IMG.JPG"},
                 {"clip_12", "clip"},
                 {"a.b_3.tar", "a.b.tar"},
                 {"IMG_0001.JPG", std::nullopt},
                 {"IMG_.JPG", std::nullopt},
                 {"IMG_0.JPG", std::nullopt},
                 {"IMG_1a.JPG", std::nullopt},
                 {"IMG-1.JPG", std::nullopt},
                 {"", std::nullopt}};
    for (const auto& [name, behind] : cases) EXPECT_EQ(nameBehindFreeName(name), behind) << name;
}

TEST(Proofs, TellOfEachFileWhetherItIsThere) {
    const struct {
        const char* what;
        std::vector<Sample> card;
        std::vector<Sample> destination;
        std::vector<Kind> byContent;
        std::vector<Kind> byKey;
    } cases[] = {
        {"nothing is there", {{"A.JPG", "aa"}}, {}, {Kind::missing}, {Kind::missing}},
        {"it is there", {{"A.JPG", "aa"}}, {{"JPG/a.jpg", "aa"}}, {Kind::present}, {Kind::present}},
        {"it is too short there",
         {{"A.JPG", "aa"}},
         {{"A.JPG", "a"}},
         {Kind::missing},
         {Kind::missing}},
        {"it is another there",
         {{"A.JPG", "aa"}},
         {{"A.JPG", "bb"}},
         {Kind::twin},
         {Kind::present}},
        {"it has a free name there",
         {{"A.JPG", "aa"}},
         {{"A.JPG", "bbb"}, {"A_1.JPG", "aa"}},
         {Kind::present},
         {Kind::otherName}},
        {"another picture has a free name there",
         {{"A.JPG", "aa"}},
         {{"A_1.JPG", "bb"}},
         {Kind::missing},
         {Kind::otherName}},
        {"a twin of it has its name there",
         {{"A.JPG", "aa"}},
         {{"A.JPG", "bb"}, {"A_12.JPG", "aa"}},
         {Kind::present},
         {Kind::present}},
        {"it is there once and twice on the card",
         {{"A.JPG", "aa"}, {"A.JPG", "aa"}},
         {{"A.JPG", "aa"}},
         {Kind::present, Kind::present},
         {Kind::present, Kind::tooFew}},
        {"it is twice on the card beside a twin",
         {{"A.JPG", "aa"}, {"A.JPG", "bb"}, {"A.JPG", "aa"}},
         {{"x/A.JPG", "cc"}, {"y/A.JPG", "aa"}},
         {Kind::present, Kind::twin, Kind::present},
         {Kind::present, Kind::present, Kind::tooFew}},
        {"it is under a free name for both",
         {{"A.JPG", "aa"}, {"A.JPG", "aa"}},
         {{"A.JPG", "bb"}, {"A_1.JPG", "aa"}},
         {Kind::present, Kind::present},
         {Kind::present, Kind::tooFew}},
        {"twins on the card",
         {{"A.JPG", "aa"}, {"A.JPG", "bb"}},
         {{"A.JPG", "bb"}},
         {Kind::twin, Kind::present},
         {Kind::present, Kind::tooFew}},
        {"twins on both sides",
         {{"A.JPG", "aa"}, {"A.JPG", "bb"}},
         {{"x/A.JPG", "bb"}, {"y/A.JPG", "aa"}},
         {Kind::present, Kind::present},
         {Kind::present, Kind::present}},
        {"the name on the card looks like a free one",
         {{"A.JPG", "aa"}, {"A_1.JPG", "aa"}},
         {{"x/A_1.JPG", "aa"}, {"y/A_2.JPG", "aa"}},
         {Kind::present, Kind::present},
         {Kind::otherName, Kind::present}},
    };
    for (const auto& [what, card, destination, byContent, byKey] : cases) {
        EXPECT_EQ(kinds(card, destination), byContent) << what;
        EXPECT_EQ(kinds(card, destination, false), byKey) << what;
    }
}

TEST(Proofs, AskNothingTwice) {
    const std::vector<Sample> card(4, {"A.JPG", "aa"});
    const std::vector<Sample> destination{{"a/A.JPG", "bb"}, {"b/A.JPG", "aa"}, {"c/A.JPG", "aa"}};
    const auto groups = proofGroups(onCard(card), atDestination(destination));
    ASSERT_EQ(groups.size(), 1U);
    std::multiset<std::pair<std::size_t, std::size_t>> asked;
    (void)proved(groups.front(), [&](std::size_t a, std::size_t b) -> Result<bool> {
        asked.emplace(a, b);
        return card[a].contents == destination[b].contents;
    });
    for (const auto& pair : asked) EXPECT_EQ(asked.count(pair), 1U);
}

TEST(Proofs, TakeWhatCannotBeComparedForNotReadable) {
    const std::vector<Sample> card{{"A.JPG", "aa"}};
    const auto groups = proofGroups(onCard(card), atDestination({{"A.JPG", "aa"}}));
    const auto proofs = proved(groups.at(0), [](std::size_t, std::size_t) -> Result<bool> {
        return failure("Lesefehler");
    });
    EXPECT_EQ(proofs, (std::vector<Proof>{{.kind = Kind::notReadable, .why = "Lesefehler"}}));
}

TEST(Proofs, LeaveOutFilesWithoutNames) {
    const std::vector<ImportCandidate> card{{.name = {}, .size = 2, .shotDate = {}}};
    EXPECT_EQ(proofGroups(card, atDestination({{"A.JPG", "aa"}})).size(), 0U);
}

std::vector<Sample> anyFiles(bool inFolders) {
    std::vector<Sample> files;
    const auto count = *rc::gen::inRange<std::size_t>(0, 6);
    for (std::size_t n = 0; n < count; ++n) {
        const auto name =
            *rc::gen::element<std::string>("A.JPG", "A_1.JPG", "A_2.JPG", "A_1_1.JPG", "B.JPG");
        files.push_back({inFolders ? std::to_string(n) + "/" + name : name,
                         *rc::gen::element<std::string>("a", "b", "cc")});
    }
    return files;
}

RC_GTEST_PROP(Proofs, FindEachFileWhoseBytesAreThereUnderANameOfItsOwn, ()) {
    const auto card = anyFiles(false);
    const auto destination = anyFiles(true);
    const auto found = kinds(card, destination);
    for (std::size_t n = 0; n < card.size(); ++n) {
        const bool isThere = std::ranges::any_of(destination, [&](const Sample& file) {
            const std::string name(lastPathComponent(file.name));
            const bool fits = name == card[n].name || nameBehindFreeName(name) == card[n].name;
            return fits && file.contents == card[n].contents;
        });
        RC_ASSERT((found[n] == Kind::present) == isThere);
    }
}

RC_GTEST_PROP(Proofs, FindByNamesAsManyFilesAsThereAre, ()) {
    const auto card = anyFiles(false);
    const auto destination = anyFiles(true);
    const auto found = kinds(card, destination, false);
    const auto key = [](const Sample& file) {
        return fileKey(lastPathComponent(file.name), std::ssize(file.contents));
    };
    for (const Sample& file : card) {
        std::ptrdiff_t present = 0;
        for (std::size_t n = 0; n < card.size(); ++n)
            if (key(card[n]) == key(file) && found[n] == Kind::present) ++present;
        RC_ASSERT(present == std::min(std::ranges::count(card, key(file), key),
                                      std::ranges::count(destination, key(file), key)));
    }
}

}  // namespace
}  // namespace bildkurier
