// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderLayout.h"
#include "TypeSummary.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <limits>

namespace bildkurier {
namespace {

std::vector<std::string> typesOf(const std::vector<TypeSummary>& summaries) {
    std::vector<std::string> types(summaries.size());
    std::ranges::transform(summaries, types.begin(), &TypeSummary::ext);
    return types;
}

std::vector<TypeSummary> summariesOf(const std::vector<TypeSummary::File>& files) {
    return TypeSummary::summarize(files);
}

TEST(TypeSummary, CountsFilesAndBytesOfEachType) {
    EXPECT_EQ(summariesOf({{"A.CR3", 10}, {"A.JPG", 3}, {"B.jpeg", 4}, {"B.cr3", 20}}),
              (std::vector<TypeSummary>{{"CR3", 2, 30}, {"JPG", 2, 7}}));
}

TEST(TypeSummary, IsOneForOneTypeAndNoneForNoFiles) {
    EXPECT_EQ(summariesOf({{"A.JPG", 3}, {"B.JPG", 0}}), (std::vector<TypeSummary>{{"JPG", 2, 3}}));
    EXPECT_EQ(summariesOf({}), std::vector<TypeSummary>{});
}

TEST(TypeSummary, CollectsFilesWithoutNameOrExtension) {
    EXPECT_EQ(summariesOf({{std::nullopt, 1}, {"clip", 2}, {"clip.", 4}}),
              (std::vector<TypeSummary>{{"Sonstige", 3, 7}}));
}

TEST(TypeSummary, PutsTheUsualTypesFirst) {
    EXPECT_EQ(typesOf(summariesOf({{"a.xmp", 1}, {"a.mp4", 1}, {"a.cr3", 1}, {"a.heif", 1}})),
              (std::vector<std::string>{"CR3", "MP4", "HEIF", "XMP"}));
    EXPECT_EQ(typesOf(summariesOf({{"a.mp4", 1}, {"a.jpg", 1}, {"a.cr3", 1}})),
              (std::vector<std::string>{"CR3", "JPG", "MP4"}));
}

TEST(TypeSummary, SortsTheOthersByCodePoint) {
    EXPECT_EQ(
        typesOf(summariesOf({{"a.xmp", 1},
                             {"a", 1},
                             {"a.mov", 1},
                             {"a.ä", 1},
                             {"a.3gp", 1},
                             {"a.heif", 1},
                             {"a.日", 1},
                             {"a.𐐀", 1},
                             {"a.", 1},
                             {"a.wav", 1}})),
        (std::vector<std::string>{"3GP", "HEIF", "MOV", "Sonstige", "WAV", "XMP", "Ä", "日", "𐐀"}));
}

TEST(TypeSummary, EqualsOneWithTheSameFields) {
    const TypeSummary summary{"JPG", 2, 7};
    EXPECT_EQ(summary, (TypeSummary{"JPG", 2, 7}));
    EXPECT_NE(summary, (TypeSummary{"CR3", 2, 7}));
    EXPECT_NE(summary, (TypeSummary{"JPG", 3, 7}));
    EXPECT_NE(summary, (TypeSummary{"JPG", 2, 8}));
}

TEST(TypeSummary, IsIdentifiedByItsType) { EXPECT_EQ((TypeSummary{"JPG", 2, 7}).id(), "JPG"); }

TEST(TypeSummary, SurvivesSizesThatCannotBe) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(summariesOf({{"a.jpg", most}, {"b.jpg", most}}),
              (std::vector<TypeSummary>{{"JPG", 2, most}}));
}

struct NamedFile {
    std::optional<std::string> name;
    std::int64_t size = 0;
};

/// Lets RapidCheck print a counterexample.
void showValue(const NamedFile& file, std::ostream& out) {
    out << file.name.value_or("(none)") << " " << file.size;
}

rc::Gen<NamedFile> namedFile() {
    using Name = std::optional<std::string>;
    return rc::gen::build<NamedFile>(
        rc::gen::set(&NamedFile::name,
                     rc::gen::element<Name>(std::nullopt, "a", "a.jpg", "b.JPEG", "c.cr3", "d.mp4",
                                            "e.mov", "f.xmp", "g.heif", "h.3gp")),
        rc::gen::set(&NamedFile::size, rc::gen::inRange<std::int64_t>(0, 1'000'000)));
}

std::vector<TypeSummary::File> viewsOf(const std::vector<NamedFile>& files) {
    std::vector<TypeSummary::File> views(files.size());
    std::ranges::transform(files, views.begin(), [](const NamedFile& file) {
        return TypeSummary::File{file.name, file.size};
    });
    return views;
}

RC_GTEST_PROP(TypeSummary, LosesNoFileAndNoByte, ()) {
    const auto named = *rc::gen::container<std::vector<NamedFile>>(namedFile());
    const auto files = viewsOf(named);
    const auto summaries = summariesOf(files);
    for (const TypeSummary& summary : summaries) {
        TypeSummary expected{summary.ext};
        for (const auto& [name, size] : files) {
            if (typeFolder(name) != summary.ext) continue;
            ++expected.count;
            expected.bytes += size;
        }
        RC_ASSERT(summary == expected);
    }
    std::int64_t count = 0;
    for (const TypeSummary& summary : summaries) count += summary.count;
    RC_ASSERT(count == static_cast<std::int64_t>(files.size()));
}

RC_GTEST_PROP(TypeSummary, KeepsTheOrderOfTypesWhateverThereIs, ()) {
    const auto named = *rc::gen::container<std::vector<NamedFile>>(namedFile());
    const std::vector<std::string> usual{"CR3", "JPG", "MP4"};
    const auto order = [&usual](const std::string& type) {
        return std::pair(std::ranges::find(usual, type) - usual.begin(), type);
    };
    RC_ASSERT(std::ranges::is_sorted(typesOf(summariesOf(viewsOf(named))), {}, order));
}

RC_GTEST_PROP(TypeSummary, DoesNotDependOnTheOrderOfTheFiles, ()) {
    const auto named = *rc::gen::container<std::vector<NamedFile>>(namedFile());
    auto files = viewsOf(named);
    const auto summaries = summariesOf(files);
    std::ranges::reverse(files);
    RC_ASSERT(summariesOf(files) == summaries);
}

}  // namespace

}  // namespace bildkurier
