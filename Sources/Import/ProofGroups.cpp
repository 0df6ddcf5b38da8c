// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProofGroups.h"

#include "FileKey.h"
#include "FileName.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
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

Proof proved(const ProofGroup::Member& member, const ProofTest& isSame) {
    std::optional<Error> error;
    for (const auto& candidate : member.candidates) {
        const auto found = isSame(member.position, candidate.position);
        if (found.value_or(false)) return {.kind = Kind::present, .why = {}};
        if (!found && !error) error = found.error();
    }
    if (error) return {.kind = Kind::notReadable, .why = error->message};
    const bool hasTwin = std::ranges::any_of(member.candidates, &ProofCandidate::hasOwnName);
    return {.kind = hasTwin ? Kind::twin : Kind::missing, .why = {}};
}

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
    std::vector<Proof> proofs;
    proofs.reserve(group.members.size());
    for (const auto& member : group.members) proofs.push_back(proved(member, isSame));
    return proofs;
}

std::vector<Proof> provedByKey(const ProofGroup& group) {
    std::set<std::size_t> taken;
    const auto kind = [&](const std::vector<ProofCandidate>& candidates) {
        if (candidates.empty()) return Kind::missing;
        if (!candidates.front().hasOwnName) return Kind::otherName;
        const bool isThere = std::ranges::any_of(candidates, [&](const auto& candidate) {
            return candidate.hasOwnName && taken.insert(candidate.position).second;
        });
        return isThere ? Kind::present : Kind::tooFew;
    };
    std::vector<Proof> proofs;
    proofs.reserve(group.members.size());
    for (const auto& member : group.members)
        proofs.push_back({.kind = kind(member.candidates), .why = {}});
    return proofs;
}

}  // namespace bildkurier
