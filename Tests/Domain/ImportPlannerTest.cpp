// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportPlanner.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

namespace bildkurier {

/// Lets RapidCheck print a counterexample.
void showValue(const ImportCandidate& candidate, std::ostream& out) {
    out << candidate.name.value_or("(none)") << " " << candidate.size;
    if (candidate.isObstructed) out << " obstructed";
    if (candidate.shotDate) out << " @" << candidate.shotDate->time_since_epoch().count();
}

namespace {

using Indices = std::vector<std::size_t>;

Date at(int millisecond) { return Date(std::chrono::milliseconds(millisecond)); }

Indices missing(const std::vector<ImportCandidate>& candidates, const FileKeys& existing = {},
                std::optional<Date> since = std::nullopt) {
    return missingIndices(candidates, existing, since);
}

TEST(MissingIndices, AreNoneForNoCandidates) { EXPECT_EQ(missing({}, {"a.jpg|1"}), Indices{}); }

TEST(MissingIndices, AreAllForAnEmptyDestination) {
    EXPECT_EQ(missing({{"B.JPG", 2, at(2)}, {"A.JPG", 1, at(3)}, {"C.JPG", 3, at(1)}}),
              (Indices{0, 1, 2}));
}

TEST(MissingIndices, LeaveOutWhatTheDestinationHasInAnyLetterCase) {
    const FileKeys existing = {fileKey("IMG_1.JPG", 100), fileKey("ÄRGER.CR3", 7)};
    EXPECT_EQ(
        missing({{"img_1.jpg", 100, {}}, {"img_1.jpg", 101, {}}, {"Ärger.cr3", 7, {}}}, existing),
        Indices{1});
}

TEST(MissingIndices, HaveTheFirstOfTwoAlike) {
    EXPECT_EQ(missing({{"A.JPG", 1, {}}, {"B.JPG", 1, {}}, {"a.jpg", 1, {}}, {"A.JPG", 2, {}}}),
              (Indices{0, 1, 3}));
}

TEST(MissingIndices, LeaveOutCandidatesWithoutName) {
    EXPECT_EQ(missing({{std::nullopt, 1, at(1)}, {"", 1, at(1)}}), Indices{1});
}

TEST(MissingIndices, BeginExactlyAtTheChosenDate) {
    EXPECT_EQ(
        missing({{"A.JPG", 1, at(9)}, {"B.JPG", 1, at(10)}, {"C.JPG", 1, at(11)}}, {}, at(10)),
        (Indices{1, 2}));
}

TEST(MissingIndices, HaveCandidatesWithoutDateOnlyWhenNoneIsChosen) {
    const std::vector<ImportCandidate> undated = {{"A.JPG", 1, std::nullopt}};
    EXPECT_EQ(missing(undated), Indices{0});
    EXPECT_EQ(missing(undated, {}, at(-1)), Indices{});
    EXPECT_EQ(missing(undated, {}, Date::min() + std::chrono::milliseconds(1)), Indices{});
}

TEST(MissingIndices, AreNotTakenByADuplicateThatIsTooOld) {
    EXPECT_EQ(missing({{"A.JPG", 1, at(1)}, {"A.JPG", 1, at(20)}}, {}, at(10)), Indices{1});
}

TEST(MissingIndices, HaveEveryObstructedCandidate) {
    const std::vector<ImportCandidate> candidates = {{"CLIP", 0, at(1), true},
                                                     {"A.JPG", 1, at(1)},
                                                     {"CLIP", 0, at(2), true},
                                                     {"CLIP", 0, at(3)},
                                                     {"CLIP", 0, at(3)}};
    EXPECT_EQ(missing(candidates), (Indices{0, 1, 2, 3}));
    EXPECT_EQ(missing(candidates, {"clip|0"}), (Indices{0, 1, 2}));
    EXPECT_EQ(missing(candidates, {}, at(2)), (Indices{2, 3}));
}

TEST(ImportCandidate, EqualsOneWithTheSameFields) {
    const ImportCandidate candidate{"A.JPG", 1, at(1)};
    EXPECT_EQ(candidate, (ImportCandidate{"A.JPG", 1, at(1)}));
    EXPECT_NE(candidate, (ImportCandidate{std::nullopt, 1, at(1)}));
    EXPECT_NE(candidate, (ImportCandidate{"A.JPG", 2, at(1)}));
    EXPECT_NE(candidate, (ImportCandidate{"A.JPG", 1, std::nullopt}));
    EXPECT_NE(candidate, (ImportCandidate{"A.JPG", 1, at(1), true}));
}

/// The same by way of a working copy of everything that exists.
Indices naiveMissing(const std::vector<ImportCandidate>& candidates, FileKeys existing,
                     std::optional<Date> since) {
    Indices result;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const ImportCandidate& candidate = candidates[i];
        const bool tooOld = since && (!candidate.shotDate || *candidate.shotDate < *since);
        if (!candidate.name || tooOld) continue;
        if (candidate.isObstructed ||
            existing.insert(fileKey(*candidate.name, candidate.size)).second)
            result.push_back(i);
    }
    return result;
}

rc::Gen<Date> someDate() { return rc::gen::map(rc::gen::inRange(0, 4), at); }

template <class T>
rc::Gen<std::optional<T>> perhaps(rc::Gen<T> generator) {
    return rc::gen::oneOf(rc::gen::just(std::optional<T>()),
                          rc::gen::map(std::move(generator), [](T value) {
                              return std::make_optional(std::move(value));
                          }));
}

rc::Gen<std::string> someName() {
    return rc::gen::element<std::string>("a", "A", "b", "B", "ä", "Ä", "c.jpg", "C.JPG");
}

rc::Gen<std::vector<ImportCandidate>> someCandidates(const rc::Gen<bool>& obstructed) {
    return rc::gen::container<std::vector<ImportCandidate>>(rc::gen::build<ImportCandidate>(
        rc::gen::set(&ImportCandidate::name, perhaps(someName())),
        rc::gen::set(&ImportCandidate::size, rc::gen::inRange<std::int64_t>(0, 4)),
        rc::gen::set(&ImportCandidate::shotDate, perhaps(someDate())),
        rc::gen::set(&ImportCandidate::isObstructed, obstructed)));
}

RC_GTEST_PROP(MissingIndices, AreThoseOfTheNaiveModel, ()) {
    const auto candidates = *someCandidates(rc::gen::arbitrary<bool>());
    const auto existing = *rc::gen::container<FileKeys>(rc::gen::apply(
        fileKey, rc::gen::cast<std::string_view>(rc::gen::element("a", "b", "ä", "c.jpg")),
        rc::gen::inRange<std::int64_t>(0, 4)));
    const auto since = *perhaps(someDate());
    RC_ASSERT(missing(candidates, existing, since) == naiveMissing(candidates, existing, since));
}

RC_GTEST_PROP(MissingIndices, AreNoneOnceImported, ()) {
    const auto candidates = *someCandidates(rc::gen::just(false));
    FileKeys existing;
    for (const std::size_t i : missing(candidates)) {
        existing.insert(fileKey(candidates[i].name.value_or(""), candidates[i].size));
    }
    RC_ASSERT(missing(candidates, existing).empty());
}

}  // namespace

}  // namespace bildkurier
