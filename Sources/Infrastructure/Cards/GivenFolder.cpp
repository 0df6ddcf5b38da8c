// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "GivenFolder.h"

#include "FileName.h"
#include "VolumeFacts.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

bool isEmpty(const std::string& folder) {
    std::error_code error;
    return std::filesystem::is_empty(folder, error) && !error;
}

std::string nameOf(const Mount& mount, const VolumeIdentity& volume) {
    if (!volume.uuid.empty()) return volume.uuid;
    if (!volume.serial.empty()) return volume.serial;
    const std::string name = mount.type + ":" + mount.source;
    // What lies on no device ("tmpfs") is known by its place alone.
    return mount.source.contains('/') ? name : name + ":" + mount.point;
}

}  // namespace

GivenFolder::GivenFolder(std::string path) : path_(std::move(path)) {}

std::optional<GivenFolder::Found> GivenFolder::find(std::span<const Mount> table) {
    std::error_code error;
    const std::string root = std::filesystem::canonical(path_, error).string();
    struct stat folder{};
    if (error || ::stat(root.c_str(), &folder) != 0 || !S_ISDIR(folder.st_mode)) return {};
    Mount mount = mountAbove(table, root).value_or(Mount{});
    const auto number = mountNumber(root);
    // What mounts by itself has done so only for this look.
    if (mount.type == "autofs") mount = mountOf(root).value_or(Mount{});
    if (mount.type == "autofs") return {};
    // Every second is too often to ask the device.
    const bool isKnown = number && number == volume_.number && mount == volume_.mount;
    if (!isKnown) noteVolume(mountedVolume(mount, root));
    const std::uint64_t inode = numbersFilesAnew(mount.type) ? 0 : folder.st_ino;
    const std::string path = pathInVolume(mount, root);
    const FolderMark mark{.device = folder.st_dev, .folder = inode, .mount = number};
    return Found{root, mark, path, volumeName_ + ":" + path};
}

void GivenFolder::noteVolume(MountedVolume volume) {
    if (!volumeName_.empty() && isSameVolume(volume_, volume)) return;
    volume_ = std::move(volume);
    volumeName_ = nameOf(volume_.mount, volume_.identity);
}

DeviceFacts GivenFolder::factsOf(const Found& found) const {
    const VolumeIdentity& volume = volume_.identity;
    const bool isVolume = found.path == "/" && !(volume.uuid.empty() && volume.serial.empty());
    if (isVolume) return volumeFacts(volume, found.root);
    return {.name = std::string(lastPathComponent(found.root)),
            .serial = {},
            .persistentId = found.identity,
            .uuid = {},
            .folder = found.root};
}

void GivenFolder::look(std::span<const Mount> table) {
    auto found = find(table);
    const bool stays = found == found_;
    if (!stays) {
        found_ = std::move(found);
        place_.reset();
    }
    if (!found_) return;
    const bool empty = !identity_ && isEmpty(found_->root);
    noteIdentity(*found_, stays, empty);
    // Another card in the same place is as welcome as the first; another folder in place of one on
    // a card is not that folder.
    const bool isOther = identity_ && found_->path != "/" && found_->identity != *identity_;
    const bool isSeenHalf = !identity_ && !empty;
    if (isOther || isSeenHalf || (place_ && place_->facts.isComplete != empty)) return;
    DeviceFacts facts = factsOf(*found_);
    facts.isComplete = !empty;
    place_ = std::make_shared<const CardPlace>(found_->root, std::move(facts), found_->mark,
                                               volume_.mount);
}

void GivenFolder::noteIdentity(const Found& found, bool stays, bool empty) {
    if (empty) {
        wasEmpty_ = true;
    } else if (!identity_ && (stays || !wasEmpty_)) {
        // A mount that comes while one looks is seen half: it must have stayed.
        identity_ = found.identity;
    }
}

}  // namespace bildkurier
