// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "VolumeFacts.h"

#include "FileName.h"

namespace bildkurier {

DeviceFacts volumeFacts(const VolumeIdentity& volume, const std::string& root) {
    DeviceFacts facts{.folder = root};
    facts.name = volume.label.empty() ? std::string(lastPathComponent(root)) : volume.label;
    if (!volume.uuid.empty()) {
        facts.persistentId = volume.uuid;
    } else if (!volume.serial.empty()) {
        facts.serial = volume.serial;
    }
    return facts;
}

}  // namespace bildkurier
