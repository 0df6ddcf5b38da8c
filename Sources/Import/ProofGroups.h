// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ContentReader.h"
#include "ImportCandidate.h"
#include "Result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// Where a card's file may be at the destination: under its own name or a free name made of it,
/// with its size.
struct ProofCandidate {
    std::size_t position = 0;  ///< among the destination's files
    bool hasOwnName = false;   ///< not a free name such as "IMG_1_1.JPG"

    bool operator==(const ProofCandidate&) const = default;
};

/// Files of a card that may be one and the same file at the destination: by names alone only all
/// of them together tell which are there, and for their contents that file is fetched once.
struct ProofGroup {
    struct Member {
        std::size_t position = 0;                ///< among the card's files
        std::vector<ProofCandidate> candidates;  ///< own names first

        bool operator==(const Member&) const = default;
    };

    std::vector<Member> members;  ///< in the card's order

    bool operator==(const ProofGroup&) const = default;
};

/// Each of `card` with a name is in one group, in the order of their first members.
std::vector<ProofGroup> proofGroups(std::span<const ImportCandidate> card,
                                    std::span<const ContentReader::File> destination);

/// What is found of one file of the card.
struct Proof {
    enum class Kind : std::uint8_t {
        present,
        missing,
        otherName,   ///< missing, but a file of its size bears a free name made of its own
        tooFew,      ///< what has its name and size stands for others of the card already
        twin,        ///< something of its name and size is there, and is another picture
        notReadable  ///< not proved
    };

    Kind kind = Kind::missing;
    std::string why;  ///< of one that is not readable

    bool operator==(const Proof&) const = default;
};

/// Whether the card's file at the first and the destination's at the second position are the
/// same.
using ProofTest = std::function<Result<bool>(std::size_t, std::size_t)>;

/// Which members of `group` are at the destination, in their order. What is there once is there
/// for all members that are equal to it. Asks `isSame` only what it needs, and nothing twice.
std::vector<Proof> proved(const ProofGroup& group, const ProofTest& isSame);

/// The same by names and sizes alone: a free name proves nothing, and no file there stands for two
/// of the card, for these may be two pictures.
std::vector<Proof> provedByKey(const ProofGroup& group);

/// The name of which `name` may be the free name: "IMG_1.JPG" of "IMG_1_2.JPG".
std::optional<std::string> nameBehindFreeName(std::string_view name);

}  // namespace bildkurier
