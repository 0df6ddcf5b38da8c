// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardPlace.h"
#include "FolderMark.h"
#include "MountTable.h"
#include "MountedVolume.h"
#include "NativeCamera.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace bildkurier {

/// A folder given by hand: a device while it is there. It goes and returns with its volume; what
/// is mounted in its place is another device. A whole volume is the device that it would be if it
/// had been found.
class GivenFolder {
public:
    /// `path` may be relative to the current folder.
    explicit GivenFolder(std::string path);

    /// Looks for the folder under the mounts of `table`. Blocks.
    void look(std::span<const Mount> table);

    /// Null while the folder is not there. The same object for as long as it stays and is not
    /// empty any more; until then its facts are not complete.
    const std::shared_ptr<const CardPlace>& place() const { return place_; }

    /// Whether it is there, and known to be the one that is meant: an empty folder may be where a
    /// card will be mounted.
    bool isSettled() const { return place_ && identity_; }

private:
    /// What does not change while the folder stays.
    struct Found {
        std::string root;
        FolderMark mark;
        std::string path;  ///< in its volume
        std::string identity;

        bool operator==(const Found&) const = default;
    };

    std::optional<Found> find(std::span<const Mount> table);
    /// Keeps what was found of the volume at first, for as long as it stays.
    void noteVolume(MountedVolume volume);
    void noteIdentity(const Found& found, bool stays, bool empty);
    DeviceFacts factsOf(const Found& found) const;

    std::string path_;
    std::optional<Found> found_;
    std::shared_ptr<const CardPlace> place_;
    /// Of the folder first seen with something in it: an empty one may be where a card will be
    /// mounted.
    std::optional<std::string> identity_;
    bool wasEmpty_ = false;
    MountedVolume volume_;    ///< that it was last seen on
    std::string volumeName_;  ///< the same, or by its place; empty while unknown
};

}  // namespace bildkurier
