// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFinder.h"

#include "CameraFolders.h"
#include "CardVolumes.h"
#include "VolumeFacts.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace bildkurier {

namespace {

constexpr Duration secondLookDelay(0.5);
constexpr Duration folderLookInterval(1.0);

}  // namespace

CardFinder::CardFinder(const MountedCards::Options& options)
    : folders_(options.folders.begin(), options.folders.end()), findsVolumes_(options.volumes) {}

CardFinder::Changes CardFinder::look(std::span<const Mount> table, Instant now) {
    Changes changes;
    lookAtFolders(table, changes);
    nextLookAtFolders_.reset();
    if (!std::ranges::all_of(folders_, &GivenFolder::isSettled))
        nextLookAtFolders_ = now + folderLookInterval;
    if (findsVolumes_) lookAtVolumes(table, now, changes);
    return changes;
}

std::optional<Instant> CardFinder::nextLook() const {
    std::optional<Instant> next = nextLookAtFolders_;
    for (const Volume& volume : volumes_) {
        if (volume.nextLook && (!next || *volume.nextLook < *next)) next = volume.nextLook;
    }
    return next;
}

void CardFinder::lookAtFolders(std::span<const Mount> table, Changes& changes) {
    for (GivenFolder& folder : folders_) {
        const Place before = folder.place();
        folder.look(table);
        if (folder.place() == before) continue;
        if (before) changes.gone.push_back(before);
        if (folder.place()) changes.come.push_back(folder.place());
    }
}

void CardFinder::lookAtVolumes(std::span<const Mount> table, Instant now, Changes& changes) {
    std::vector<Volume> known = std::exchange(volumes_, {});
    for (const Mount& mount : cardVolumes(table)) {
        auto mounted = mountedVolume(mount, mount.point);
        const auto same = std::ranges::find_if(
            known, [&](const Volume& volume) { return isSameVolume(volume.mounted, mounted); });
        const bool isNew = same == known.end();
        Volume& volume =
            volumes_.emplace_back(isNew ? Volume{std::move(mounted)} : std::move(*same));
        if (!isNew) known.erase(same);
        const bool isDue = volume.nextLook && *volume.nextLook <= now;
        if (!isNew && !isDue) continue;
        volume.isCard = hasCameraFolders(volume.mounted.mount.point);
        volume.nextLook.reset();
        if (isNew && !volume.isCard) volume.nextLook = now + secondLookDelay;
    }
    for (const Volume& volume : known) {
        if (volume.place) changes.gone.push_back(volume.place);
    }
    for (Volume& volume : volumes_) {
        if (volume.isCard && !isReported(volume.mounted.mount)) report(volume, changes);
    }
}

/// A volume mounted at several places is one camera, and so is one whose folder was given.
bool CardFinder::isReported(const Mount& mount) const {
    return std::ranges::any_of(volumes_,
                               [&mount](const Volume& volume) {
                                   return volume.place &&
                                          volume.mounted.mount.device == mount.device;
                               }) ||
           std::ranges::any_of(folders_, [&mount](const GivenFolder& folder) {
               return folder.place() && folder.place()->root == mount.point;
           });
}

void CardFinder::report(Volume& volume, Changes& changes) const {
    struct stat root{};
    const auto& [mount, number, identity] = volume.mounted;
    if (::stat(mount.point.c_str(), &root) != 0) return;
    volume.place = std::make_shared<const CardPlace>(
        mount.point, volumeFacts(identity, mount.point),
        FolderMark{.device = root.st_dev, .mount = number}, mount);
    changes.come.push_back(volume.place);
}

}  // namespace bildkurier
