// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "VolumeIdentity.h"

#include "Destroy.h"

#include <blkid/blkid.h>
#include <libudev.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace bildkurier {

namespace {

using Udev = std::unique_ptr<udev, Destroy<udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, Destroy<udev_device_unref>>;
using BlkidProbe = std::unique_ptr<std::remove_pointer_t<blkid_probe>, Destroy<blkid_free_probe>>;

/// The number of the block device. That of the mount is another where one file system spans
/// several devices.
dev_t blockDevice(const Mount& mount) {
    struct stat node{};
    const bool isDevice = ::stat(mount.source.c_str(), &node) == 0 && S_ISBLK(node.st_mode);
    return isDevice ? node.st_rdev : mount.device;
}

VolumeIdentity identityFromUdev(dev_t number) {
    const Udev udev(udev_new());
    if (!udev) return {};
    const UdevDevice device(udev_device_new_from_devnum(udev.get(), 'b', number));
    if (!device) return {};
    const auto property = [&device](const char* name) -> std::string {
        const char* value = udev_device_get_property_value(device.get(), name);
        return value == nullptr ? "" : value;
    };
    return {.uuid = property("ID_FS_UUID"),
            .serial = property("ID_SERIAL_SHORT"),
            .label = property("ID_FS_LABEL")};
}

VolumeIdentity identityFromDevice(const std::string& node) {
    const BlkidProbe probe(blkid_new_probe_from_filename(node.c_str()));
    if (!probe) return {};
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_UUID | BLKID_SUBLKS_LABEL);
    if (blkid_do_safeprobe(probe.get()) != 0) return {};
    const auto property = [&probe](const char* name) -> std::string {
        const char* value = nullptr;
        const bool found = blkid_probe_lookup_value(probe.get(), name, &value, nullptr) == 0;
        return found ? value : "";
    };
    return {.uuid = property("UUID"), .serial = {}, .label = property("LABEL")};
}

/// Cameras that format without a number of their own write zeros.
bool isBlank(const std::string& uuid) { return uuid.find_first_not_of("0-") == std::string::npos; }

}  // namespace

VolumeIdentity volumeIdentity(const Mount& mount) {
    if (!mount.source.starts_with('/')) return {};  // on no device
    VolumeIdentity identity = identityFromUdev(blockDevice(mount));
    if (identity.uuid.empty()) {
        const VolumeIdentity probed = identityFromDevice(mount.source);
        identity.uuid = probed.uuid;
        if (identity.label.empty()) identity.label = probed.label;
    }
    if (isBlank(identity.uuid)) identity.uuid.clear();
    return identity;
}

}  // namespace bildkurier
