// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardPlace.h"
#include "GivenFolder.h"
#include "MainQueue.h"
#include "MountTable.h"
#include "MountedCards.h"
#include "MountedVolume.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace bildkurier {

/// Decides, as the mount table changes, which volumes and folders are cameras. One thread.
class CardFinder {
public:
    using Place = std::shared_ptr<const CardPlace>;

    /// What changed since the last look, in order.
    struct Changes {
        std::vector<Place> gone;  ///< the objects that came before
        std::vector<Place> come;
    };

    explicit CardFinder(const MountedCards::Options& options);

    /// Looks at the folders given and at the volumes that are new in `table`. Blocks.
    Changes look(std::span<const Mount> table, Instant now);

    /// When to look again even if the table stays as it is: a volume may get its folders
    /// shortly after it was mounted, and a folder given may be absent or empty for now.
    std::optional<Instant> nextLook() const;

private:
    struct Volume {
        MountedVolume mounted;
        std::optional<Instant> nextLook;
        bool isCard = false;
        Place place;  ///< null unless reported
    };

    void lookAtFolders(std::span<const Mount> table, Changes& changes);
    void lookAtVolumes(std::span<const Mount> table, Instant now, Changes& changes);
    void report(Volume& volume, Changes& changes) const;
    bool isReported(const Mount& mount) const;

    std::vector<GivenFolder> folders_;
    bool findsVolumes_;
    std::optional<Instant> nextLookAtFolders_;
    std::vector<Volume> volumes_;  ///< in the order of the table
};

}  // namespace bildkurier
