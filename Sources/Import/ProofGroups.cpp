// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProofGroups.h"

#include "FileKey.h"
#include "FileName.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace bildkurier {

namespace {

using Kind = Proof::Kind;
using File = ContentReader::File;
using CandidatesByKey = std::unordered_map<std::string, std::vector<ProofCandidate>>;

/// By the keys that files of a card have which may be these.
CandidatesByKey candidatesByKey(std::span<const File> destination) {
    std::vector<std::size_t> byPath(destination.size());
    std::iota(byPath.begin(), byPath.end(), std::size_t{0});
    std::ranges::sort(byPath, {}, [&](std::size_t n) { return destination[n].place.path; });
    CandidatesByKey found;
    const auto add = [&](bool hasOwnName, std::size_t n, std::string_view name) {
        found[fileKey(name, destination[n].size)].push_back({n, hasOwnName});
    };
    for (const std::size_t n : byPath) add(true, n, lastPathComponent(destination[n].place.path));
    for (const std::size_t n : byPath) {
        const auto name = nameBehindFreeName(lastPathComponent(destination[n].place.path));
        if (name) add(false, n, *name);
    }
    return found;
}

/// Sets that are joined one by one.
class Sets {
public:
    explicit Sets(std::size_t count) : above_(count) {
        std::iota(above_.begin(), above_.end(), std::size_t{0});
    }

    /// The first of those in the same set.
    std::size_t first(std::size_t n) {
        while (above_[n] != n) n = above_[n] = above_[above_[n]];
        return n;
    }

    void join(std::size_t a, std::size_t b) {
        const auto [first, second] = std::minmax({this->first(a), this->first(b)});
        above_[second] = first;
    }

private:
    std::vector<std::size_t> above_;
};

/// Finds for as many members as possible a file of their own at the destination.
class Matching {
public:
    Matching(const ProofGroup& group, const ProofTest& isSame)
        : group_(group), isSame_(isSame), matched_(group.members.size()) {}

    std::vector<Proof> run() {
        std::vector<Proof> proofs;
        for (std::size_t m = 0; m < group_.members.size(); ++m)
            if (!takeFree(m)) takeOver(m);
        for (std::size_t m = 0; m < group_.members.size(); ++m) proofs.push_back(proof(m));
        return proofs;
    }

private:
    bool isSame(std::size_t member, std::size_t candidate) {
        const auto key = std::pair(member, candidate);
        if (const auto known = known_.find(key); known != known_.end()) return known->second;
        const auto found = isSame_(group_.members[member].position, candidate);
        if (!found) errors_.try_emplace(member, found.error().message);
        return known_[key] = found.value_or(false);
    }

    bool takeFree(std::size_t member) {
        return std::ranges::any_of(group_.members[member].candidates, [&](const auto& candidate) {
            return !owners_.contains(candidate.position) && isSame(member, candidate.position) &&
                   take(member, candidate.position);
        });
    }

    bool take(std::size_t member, std::size_t candidate) {
        owners_[candidate] = member;
        return matched_[member] = true;
    }

    /// Looks, step by step, for another member that can make room: each of those in the way is
    /// asked once whether it has a free file instead of its own.
    void takeOver(std::size_t member) {
        std::map<std::size_t, std::size_t> wantedBy;  // candidate, member
        std::vector<std::size_t> asked{member};
        for (std::size_t next = 0; next < asked.size(); ++next) {
            for (const auto& [candidate, own] : group_.members[asked[next]].candidates) {
                if (wantedBy.contains(candidate) || !isSame(asked[next], candidate)) continue;
                wantedBy[candidate] = asked[next];
                const auto owner = owners_.find(candidate);
                if (owner == owners_.end()) return handOn(candidate, member, wantedBy);
                asked.push_back(owner->second);
            }
        }
    }

    /// Everybody on the way from the free candidate back to `member` takes what it wanted.
    void handOn(std::size_t free, std::size_t member,
                const std::map<std::size_t, std::size_t>& wantedBy) {
        for (std::size_t candidate = free;;) {
            const std::size_t taker = wantedBy.at(candidate);
            const auto given =
                std::ranges::find(owners_, taker, [](const auto& o) { return o.second; });
            const auto old = given == owners_.end() ? candidate : given->first;
            take(taker, candidate);
            if (taker == member) return;
            candidate = old;
        }
    }

    Proof proof(std::size_t member) {
        if (matched_[member]) return {.kind = Kind::present, .why = {}};
        if (const auto error = errors_.find(member); error != errors_.end())
            return {.kind = Kind::notReadable, .why = error->second};
        const auto& candidates = group_.members[member].candidates;
        const bool isElsewhere = std::ranges::any_of(
            candidates, [&](const auto& candidate) { return isSame(member, candidate.position); });
        if (isElsewhere) return {.kind = Kind::tooFew, .why = {}};
        const bool hasTwin =
            std::ranges::any_of(candidates, [](const auto& each) { return each.hasOwnName; });
        return {.kind = hasTwin ? Kind::twin : Kind::missing, .why = {}};
    }

    const ProofGroup& group_;
    const ProofTest& isSame_;
    std::vector<bool> matched_;
    std::map<std::size_t, std::size_t> owners_;  ///< candidate, member
    std::map<std::pair<std::size_t, std::size_t>, bool> known_;
    std::map<std::size_t, std::string> errors_;  ///< why a member could not be compared
};

}  // namespace

std::optional<std::string> nameBehindFreeName(std::string_view name) {
    const auto [base, extension] = nameParts(name);
    const auto mark = base.rfind('_');
    if (mark == std::string_view::npos) return {};
    const auto number = base.substr(mark + 1);
    const bool counts = !number.empty() && number.front() != '0' &&
                        number.find_first_not_of("0123456789") == std::string_view::npos;
    if (!counts) return {};
    std::string behind(base.substr(0, mark));
    if (!extension.empty()) behind.append(".").append(extension);
    return behind;
}

std::vector<ProofGroup> proofGroups(std::span<const ImportCandidate> card,
                                    std::span<const File> destination) {
    const CandidatesByKey byKey = candidatesByKey(destination);
    std::vector<const std::vector<ProofCandidate>*> candidates(card.size());
    std::unordered_map<std::size_t, std::size_t> firstWith;  // candidate, card's file
    Sets sets(card.size());
    for (std::size_t n = 0; n < card.size(); ++n) {
        if (!card[n].name) continue;
        const auto found = byKey.find(fileKey(*card[n].name, card[n].size));
        if (found == byKey.end()) continue;
        candidates[n] = &found->second;
        for (const auto& candidate : found->second)
            sets.join(n, firstWith.try_emplace(candidate.position, n).first->second);
    }
    std::vector<ProofGroup> groups;
    std::unordered_map<std::size_t, std::size_t> groupOf;  // first member, group
    for (std::size_t n = 0; n < card.size(); ++n) {
        if (!card[n].name) continue;
        const auto [group, isNew] = groupOf.try_emplace(sets.first(n), groups.size());
        if (isNew) groups.emplace_back();
        auto& member = groups[group->second].members.emplace_back();
        member.position = n;
        if (candidates[n] != nullptr) member.candidates = *candidates[n];
    }
    return groups;
}

std::vector<Proof> proved(const ProofGroup& group, const ProofTest& isSame) {
    return Matching(group, isSame).run();
}

std::vector<Proof> provedByKey(const ProofGroup& group) {
    std::map<std::size_t, const ProofGroup::Member*> members;
    for (const auto& member : group.members) members[member.position] = &member;
    auto proofs = proved(group, [&](std::size_t position, std::size_t candidate) {
        const auto& candidates = members.at(position)->candidates;
        return std::ranges::find(candidates, candidate, &ProofCandidate::position)->hasOwnName;
    });
    for (std::size_t m = 0; m < proofs.size(); ++m) {
        const bool isOnlyUnderFreeName =
            proofs[m].kind == Kind::missing && !group.members[m].candidates.empty();
        if (isOnlyUnderFreeName) proofs[m].kind = Kind::otherName;
    }
    return proofs;
}

}  // namespace bildkurier
